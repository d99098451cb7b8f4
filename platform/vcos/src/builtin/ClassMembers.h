// Not installed; internal to the built-in classes of the class-object system.
//
// The functions that add the members of each built-in class; the class table
// in BuiltinClasses.cpp names them.
#pragma once

class COSClass;

namespace vcos::builtin {

void addHandleMembers(COSClass* cls);
void addDynamicpropsMembers(COSClass* cls);
void addHeterogeneousMembers(COSClass* cls);
void addCustomDisplayMembers(COSClass* cls);
void addPropertyGroupMembers(COSClass* cls);

}  // namespace vcos::builtin
