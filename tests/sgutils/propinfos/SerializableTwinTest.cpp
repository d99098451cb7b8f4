// Properties with serializable twins, on the generated test mixin
// TwinProperties: what the generator registers and in which order, what
// each face reports, what a file would read from and write to a twin, and
// the sealing of the mixin to its list of subclasses.
#include <gtest/gtest.h>

#include <complex>
#include <string>
#include <vector>

#include "PropertyModelClasses.h"
#include "foundation/core/except/IMsgIDException.h"
#include "sgutils/objects/GeneratedClassInfo.h"
#include "sgutils/objects/TwinProperties.gen.h"
#include "sgutils/persistence/UDDConverter.h"
#include "sgutils/propinfos/BlockOf.h"
#include "vcos/COSClass.h"
#include "vx/vx.h"

namespace sgtest::propmodel {
namespace {

using graphics::datatype::AutoManual;

// A 1-by-n complex double array whose imaginary parts mark an old handle.
vxArray* oldHandle(vxSize n) {
  const vxSize dims[] = {1, n};
  vxArray* a = vxCreateNumericArray(2, dims, vxDOUBLE_CLASS, vxCOMPLEX);
  for (vxIndex k = 0; k < n; ++k) vxGetComplexDoubles(a)[k] = {0.0, sgutils::UDDConverter::handleMarker()};
  return a;
}

class Twins : public ::testing::Test {
 protected:
  void SetUp() override { object = makeObject(kTwinClass); }
  void TearDown() override { object->deleteObject(COSGetPublicClient()); }
  sgtest::TwinProperties& block() {
    return *sgutils::blockOf<sgtest::TwinProperties>(object.get(), sgtest::TwinProperties::classID());
  }
  // The text a file would read from "SerializableLabel".
  std::u16string savedLabel() {
    const COSValue v = publicGet(object, "SerializableLabel");
    std::u16string text = v.isEmpty() ? u"" : *v.asPointer<const std::u16string>();
    object->releasePropertyValue(COSGetPublicClient(), prop(object, "SerializableLabel"), v);
    return text;
  }

  COSInterfacePtr object;
};

TEST_F(Twins, GeneratorAddsEachFaceAndNotesItsNameInOrder) {
  auto* info = dynamic_cast<sgutils::GeneratedClassInfo*>(sgtest::TwinProperties::getClassInstance()->getClassInfo());
  ASSERT_NE(info, nullptr);
  std::vector<std::string> names;
  for (COSID id : info->addedPropertyNames()) names.push_back(id.str());
  const std::vector<std::string> expected = {"LabelMode", "Label_I",  "Label",
                                             "SerializableLabel", "Payload", "SerializablePayload"};
  EXPECT_EQ(names, expected);
}

TEST_F(Twins, TheTwinIsWhatAFileKeeps) {
  EXPECT_TRUE(prop(object, "Label_I")->isTransient()) << "the internal face of a property with a twin is saved";
  EXPECT_TRUE(prop(object, "Label")->isDependent());
  COSPropInfo* twin = prop(object, "SerializableLabel");
  EXPECT_FALSE(twin->isTransient());
  EXPECT_FALSE(twin->isVisible());
  EXPECT_FALSE(twin->isResetAllowed());
  EXPECT_FALSE(twin->isDefaultAllowed());
  // Without a mode the record's word makes the property transient; the twin
  // is saved all the same.
  EXPECT_TRUE(prop(object, "Payload")->isTransient());
  EXPECT_FALSE(prop(object, "SerializablePayload")->isTransient());
}

TEST_F(Twins, AnAutomaticPropertyIsSavedAsItsFactoryDefault) {
  block().setLabel(u"chosen by the class", graphics::datatype::PrivateClient);
  EXPECT_EQ(block().getLabelMode(), AutoManual::Auto);
  EXPECT_EQ(block().getLabel(), u"chosen by the class");
  EXPECT_EQ(savedLabel(), u"") << "an automatic value went into the file";

  const std::u16string mine = u"mine";
  publicSet(object, "Label", COSValue(&mine));
  EXPECT_EQ(block().getLabelMode(), AutoManual::Manual);
  EXPECT_EQ(savedLabel(), u"mine");
}

TEST_F(Twins, ReadingBackLendsTheStoredArrayWhenNothingChanges) {
  matrix::unique_vxArray numbers(vxCreateDoubleScalar(4));
  publicSet(object, "Payload", COSValue(numbers.get()));
  const COSValue saved = publicGet(object, "SerializablePayload");
  EXPECT_EQ(saved.asPointer<vxArray>(), block().getPayload()) << "an unchanged value was copied";
  object->releasePropertyValue(COSGetPublicClient(), prop(object, "SerializablePayload"), saved);
  EXPECT_EQ(vxGetScalar(block().getPayload()), 4) << "releasing the lent value freed the stored one";
}

TEST_F(Twins, AWriteFromAFileReplacesOldHandles) {
  matrix::unique_vxArray cell(vxCreateCellMatrix(1, 2));
  vxSetCell(cell.get(), 0, oldHandle(3));
  vxSetCell(cell.get(), 1, vxCreateDoubleScalar(8));
  publicSet(object, "SerializablePayload", COSValue(cell.get()));

  const vxArray* stored = block().getPayload();
  ASSERT_TRUE(stored && vxIsCell(stored));
  const vxArray* replaced = vxGetCell(stored, 0);
  EXPECT_STREQ(vxGetClassName(replaced), "vantel.graphics.GraphicsPlaceholder");
  EXPECT_EQ(vxGetNumberOfElements(replaced), 3u);
  EXPECT_EQ(vxGetScalar(vxGetCell(stored, 1)), 8);
  EXPECT_TRUE(vxIsComplex(vxGetCell(cell.get(), 0))) << "the value given was changed";
}

TEST(TwinSealing, AClassOffTheMixinsListCannotDeriveFromIt) {
  try {
    makeObject(kRefusedTwinClass);
    FAIL() << "a class off the list derived from a sealed mixin";
  } catch (const foundation::core::except::IMsgIDException& e) {
    EXPECT_EQ(e.identifier(), "VANTEL:vcos:NotAllowedSubclass");
  }
}

}  // namespace
}  // namespace sgtest::propmodel
