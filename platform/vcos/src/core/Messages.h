// Not installed; internal to the class-object system.
//
// The identifiers the class-object system raises; texts in
// resources/messages/vcos.msg.
#pragma once

namespace vcos::msg {
inline constexpr const char* InvalidHandle = "VANTEL:vcos:InvalidHandle";
inline constexpr const char* AmbiguousPropertyName = "VANTEL:vcos:AmbiguousPropertyName";
inline constexpr const char* UnknownProperty = "VANTEL:vcos:UnknownProperty";
inline constexpr const char* PropertyNotOfClass = "VANTEL:vcos:PropertyNotOfClass";
inline constexpr const char* SetProhibited = "VANTEL:vcos:SetProhibited";
inline constexpr const char* GetProhibited = "VANTEL:vcos:GetProhibited";
inline constexpr const char* UnknownClass = "VANTEL:vcos:UnknownClass";
inline constexpr const char* NotAllowedSubclass = "VANTEL:vcos:NotAllowedSubclass";
inline constexpr const char* SealedSuperclass = "VANTEL:vcos:SealedSuperclass";
inline constexpr const char* CircularSuperclass = "VANTEL:vcos:CircularSuperclass";
inline constexpr const char* AbstractClass = "VANTEL:vcos:AbstractClass";
inline constexpr const char* ExistingName = "VANTEL:vcos:ExistingName";
inline constexpr const char* UnknownType = "VANTEL:vcos:UnknownType";
inline constexpr const char* InvalidValueForType = "VANTEL:vcos:InvalidValueForType";
inline constexpr const char* ConversionFailed = "VANTEL:vcos:ConversionFailed";
inline constexpr const char* NoInstanceData = "VANTEL:vcos:NoInstanceData";
inline constexpr const char* NoMatchingSignature = "VANTEL:vcos:NoMatchingSignature";
inline constexpr const char* MethodAccessDenied = "VANTEL:vcos:MethodAccessDenied";
inline constexpr const char* UnknownEvent = "VANTEL:vcos:UnknownEvent";
inline constexpr const char* EventAccessDenied = "VANTEL:vcos:EventAccessDenied";
inline constexpr const char* PropertyNotObservable = "VANTEL:vcos:PropertyNotObservable";
inline constexpr const char* PropertyListenDenied = "VANTEL:vcos:PropertyListenDenied";
inline constexpr const char* UnknownMetaClass = "VANTEL:vcos:UnknownMetaClass";
inline constexpr const char* AlreadyHasOwner = "VANTEL:vcos:AlreadyHasOwner";
inline constexpr const char* CircularOwnership = "VANTEL:vcos:CircularOwnership";
inline constexpr const char* DynamicPropertyExists = "VANTEL:vcos:DynamicPropertyExists";
}  // namespace vcos::msg
