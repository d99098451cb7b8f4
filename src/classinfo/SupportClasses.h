// Not installed; internal to sgutils.
// The class infos that start-up registers beside the four roots: the custom
// metadata classes, the display and copy classes (their behaviour comes with
// their own parts), the test bases, and the mixin that the property handler
// root derives from.
#pragma once

class COSClassInfo;

namespace sgutils::support {

COSClassInfo* newGraphicsDisplayClassInfo();
// Made in src/copy, with the copy transaction.
COSClassInfo* newCopyContextCI();
COSClassInfo* newCopyableCI();
COSClassInfo* newGraphicsTestBaseCI();
COSClassInfo* newSGJavaVisibleMixinTestBaseCI();
COSClassInfo* newLegacyTestBaseCI();
// Made in src/metadata, with their behaviour.
COSClassInfo* newSGCustomMetaPropInfo();
COSClassInfo* newSGCustomMetaEventInfo();
COSClassInfo* newSGCustomMetaClass();
// "vantel.mixin.internal.DefaultFactoryPropHandler", when the platform has
// none: registered in its own package so that GraphicsPropertyHandler builds.
void ensureDefaultFactoryPropHandler();

}  // namespace sgutils::support
