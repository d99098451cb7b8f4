// The methods that keep numeric handles working beside graphics objects,
// and the conversions of numbers and arrays to objects, on the real classes.
#include <string>

#include "classes/ClassesTestSupport.h"
#include "sgclasses/ClassNames.h"
#include "sgdatatypes/HandleNumberTable.h"
#include "sgutils/persistence/HandleConversion.h"
#include "support/ErrorId.h"
#include "vcos/COSClass.h"
#include "vcos/COSTypeConversion.h"
#include "vcos/COSTypeRepository.h"
#include "vcos/FunctionDispatcher.h"
#include "vcos/ObjectCalls.h"
#include "sgutils/classinfo/SGFilterDefaultFactoryPropMI.h"
#include "sgutils/classinfo/SGGetDefaultPropValueMI.h"
#include "sgutils/classinfo/SGGetFactoryPropValueMI.h"
#include "sgutils/classinfo/SGSetDefaultPropValueMI.h"

namespace sgtest::classes {
namespace {

using sgtest::errorId;
namespace handles = sgutils::handles;

Arr scalar(double v) { return Arr(vxCreateDoubleScalar(v)); }

Arr call(const char* method, std::initializer_list<const vxArray*> in) {
  vxArray* out[1] = {nullptr};
  std::vector<const vxArray*> args(in);
  omCallMethod("vantel.graphics.Graphics", method, COSGetPublicClient(), 1, out, static_cast<int>(args.size()),
               args.data(), /*dispatchOnObject=*/false);
  return Arr(out[0]);
}

double numberOf(const COSInterfacePtr& object) {
  Arr self(omCreateVCOSScalar(object));
  return vxGetScalar(call("double", {self.get()}).get());
}

using HandleMethodsTest = LineInAxesTest;

TEST_F(HandleMethodsTest, ScalarConversionTakesObjectsNumbersAndEmpties) {
  const double n = numberOf(line);
  EXPECT_EQ(handles::toScalarObject(scalar(n).get()).get(), line.get());
  Arr self(omCreateVCOSScalar(line));
  EXPECT_EQ(handles::toScalarObject(self.get()).get(), line.get());
  EXPECT_EQ(handles::toScalarObject(nullptr), nullptr);
  Arr emptyDouble(vxCreateDoubleMatrix(0, 0, vxREAL));
  EXPECT_EQ(handles::toScalarObject(emptyDouble.get()), nullptr);

  Arr two(vxCreateDoubleMatrix(1, 2, vxREAL));
  EXPECT_EQ(errorId([&] { handles::toScalarObject(two.get()); }), "VANTEL:sg:dt_conv:Matrix_to_HObject:BadHandle");
  EXPECT_EQ(errorId([&] { handles::toScalarObject(scalar(0.123456).get()); }),
            "VANTEL:sg:dt_conv:Matrix_to_HObject:BadHandle");
  Arr flag(vxCreateLogicalScalar(true));
  EXPECT_EQ(errorId([&] { handles::toScalarObject(flag.get()); }), "VANTEL:sg:InvalidObjectHandle");
  Arr emptyChar(vxCreateString(""));
  EXPECT_EQ(errorId([&] { handles::toScalarObject(emptyChar.get()); }), "VANTEL:sg:InvalidObjectHandle");

  // A deleted object: by its array, and by its number, which the deletion
  // took out of the table but which is still known to have named it.
  COSInterfacePtr other = sgclasses::create(sgclasses::kLineClass, axes);
  const double m = graphics::datatype::HandleNumberTable::numberFor(other.get());
  Arr otherSelf(omCreateVCOSScalar(other));
  other->deleteObject(COSGetPublicClient());
  EXPECT_EQ(errorId([&] { handles::toScalarObject(otherSelf.get()); }), "VANTEL:sg:DeletedObject");
  EXPECT_EQ(errorId([&] { handles::toScalarObject(scalar(m).get()); }), "VANTEL:sg:DeletedObjectDoubleHandle");
}

TEST_F(HandleMethodsTest, ArrayConversionStrictOrWithPlaceholders) {
  Arr numbers(vxCreateDoubleMatrix(1, 2, vxREAL));
  vxGetPr(numbers.get())[0] = numberOf(line);
  vxGetPr(numbers.get())[1] = 0.123456;
  Arr loose = handles::toObjectArray(numbers.get(), false);
  ASSERT_EQ(vxGetNumberOfElements(loose.get()), 2u);
  EXPECT_EQ(omGetArrayElement(loose.get(), 0).get(), line.get());
  EXPECT_TRUE(omGetArrayElement(loose.get(), 1)->getClass()->isSubclassOf(COSID("vantel.graphics.GraphicsPlaceholder")));

  std::string message;
  try {
    handles::toObjectArray(numbers.get(), true);
  } catch (const foundation::core::except::IMsgIDException& e) {
    message = e.what();
  }
  EXPECT_NE(message.find("0.123456"), std::string::npos) << message;
  vxGetPr(numbers.get())[1] = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(errorId([&] { handles::toObjectArray(numbers.get(), true); }),
            "VANTEL:graphics:CannotConvertDoubleToHandle");
}

TEST_F(HandleMethodsTest, DoubleIsCachedAndMinusOneWhenDeleted) {
  const double n = numberOf(line);
  EXPECT_EQ(numberOf(line), n);
  EXPECT_NE(n, -1.0);
  COSInterfacePtr other = sgclasses::create(sgclasses::kLineClass, axes);
  const double m = numberOf(other);
  EXPECT_NE(m, n);
  other->deleteObject(COSGetPublicClient());
  EXPECT_EQ(numberOf(other), -1.0);
  // The number that double had given names no object, and is known as the
  // number of a deleted one.
  EXPECT_EQ(errorId([&] { handles::toScalarObject(scalar(m).get()); }), "VANTEL:sg:DeletedObjectDoubleHandle");
}

TEST_F(HandleMethodsTest, ConvertObjectTakesNumbersThatNameObjects) {
  Arr cls(vxCreateString("vantel.graphics.Graphics"));
  Arr converted = call("convertObject", {cls.get(), scalar(numberOf(line)).get()});
  EXPECT_EQ(omGetArrayElement(converted.get(), 0).get(), line.get());
  Arr empty(vxCreateDoubleMatrix(0, 0, vxREAL));
  Arr none = call("convertObject", {cls.get(), empty.get()});
  EXPECT_TRUE(omIsVCOS(none.get()) && vxIsEmpty(none.get()));

  EXPECT_EQ(errorId([&] { call("convertObject", {cls.get(), scalar(0.123456).get()}); }),
            "VANTEL:graphics:CannotConvertDoubleToHandle");
  EXPECT_EQ(errorId([&] { call("convertObject", {cls.get(), cls.get()}); }),
            "VANTEL:legacy_two_part:invalidConversion");
  EXPECT_FALSE(errorId([&] { call("convertObject", {cls.get()}); }).empty());
  EXPECT_FALSE(errorId([&] { call("convertObject", {cls.get(), cls.get(), cls.get()}); }).empty());
}

// The two number conversions as the data types register them, to put back
// after a test has taken them out.
struct NumberToObject : COSTypeConversion {
  COSValue convert(COSValue from) const override {
    COSInterface* o = graphics::datatype::HandleNumberTable::entryFor(from.asDouble());
    if (o) o->addReference(COSStrongReference);
    return COSValue(o);
  }
};
struct ObjectToNumber : COSTypeConversion {
  COSValue convert(COSValue from) const override {
    return COSValue::fromDouble(graphics::datatype::HandleNumberTable::numberFor(from.asPointer<COSInterface>()));
  }
};

TEST_F(HandleMethodsTest, NoNumberConversionIsAnError) {
  const COSID number("double"), object("vantel.graphics.datatype.COSInterface");
  COSTypeRepository::removeConversion(number, object);
  COSTypeRepository::removeConversion(object, number);
  Arr one = scalar(1);
  const std::string toObjects = errorId([&] { handles::toObjectArray(one.get(), true); });
  // A fresh line has no number yet, so double must convert.
  COSInterfacePtr fresh = sgclasses::create(sgclasses::kLineClass, axes);
  const std::string toNumber = errorId([&] { numberOf(fresh); });
  COSTypeRepository::addConversion(number, object, new NumberToObject);
  COSTypeRepository::addConversion(object, number, new ObjectToNumber);
  EXPECT_EQ(toObjects, "VANTEL:graphics:DoubleHandleConversionError");
  EXPECT_EQ(toNumber, "VANTEL:graphics:DoubleHandleConversionError");
  EXPECT_EQ(handles::toScalarObject(scalar(numberOf(fresh)).get()).get(), fresh.get());
}

// Runs a handler on element 0 of the object, as its class would.
template <class Handler>
Arr handle(const COSInterfacePtr& object, const char* name, const vxArray* value = nullptr) {
  static const Handler handler(COSID("vantel.graphics.internal.GraphicsPropertyHandler"));
  Arr self(omCreateVCOSScalar(object)), text(vxCreateString(name));
  const COSValue in[] = {COSValue(self.get()), COSValue(text.get()), COSValue(value)};
  COSValue out[1];
  int nlhs = 1;
  handler.invoke(COSGetPublicClient(), nlhs, out, value ? 3 : 2, in);
  return Arr(out[0].asPointer<vxArray>());
}

TEST_F(HandleMethodsTest, DefaultAndFactoryHandlers) {
  using Get = SGGetDefaultPropValueMI;
  using Set = SGSetDefaultPropValueMI;
  using Factory = SGGetFactoryPropValueMI;
  Arr width(vxCreateDoubleScalar(4));
  handle<Set>(figure, "defaultLineLineWidth", width.get());
  EXPECT_EQ(vxGetScalar(handle<Get>(line, "defaultLineLineWidth").get()), 4.0);
  EXPECT_EQ(vxGetNumberOfFields(handle<Get>(figure, "default").get()), 1);
  EXPECT_EQ(vxGetScalar(handle<Factory>(line, "factoryLineLineWidth").get()), 0.5);
  EXPECT_TRUE(vxIsStruct(handle<Factory>(sgclasses::root(), "Factory").get()));
  // "remove" on the whole list empties it.
  Arr remove(vxCreateString("remove"));
  handle<Set>(figure, "Default", remove.get());
  EXPECT_EQ(vxGetNumberOfFields(handle<Get>(figure, "default").get()), 0);
  EXPECT_EQ(vxGetScalar(handle<Get>(line, "defaultLineLineWidth").get()), 0.5);

  EXPECT_EQ(errorId([&] { handle<Factory>(figure, "factory"); }), "VANTEL:sgutils:OnlyRootHasFactoryDefaults");
  EXPECT_EQ(errorId([&] { handle<Set>(figure, "factoryLineLineWidth", width.get()); }),
            "VANTEL:sgutils:CannotSetFactoryValue");
  for (const std::string& id : {errorId([&] { handle<Get>(line, ""); }), errorId([&] { handle<Factory>(line, ""); }),
                                errorId([&] { handle<Set>(line, "", width.get()); })})
    EXPECT_EQ(id, "VANTEL:sg:InvalidProperty");

  Arr full = handle<SGFilterDefaultFactoryPropMI>(line, "linewidth");
  EXPECT_EQ(vxArrayToStdString(full.get()), "LineWidth");
  EXPECT_EQ(errorId([&] { handle<SGFilterDefaultFactoryPropMI>(line, "NoSuch"); }), "VANTEL:sg:InvalidProperty");
}

int dispCalls = 0;
void fakeGetdisp(int, vxArray* plhs[], int nrhs, const vxArray*[]) {
  ++dispCalls;
  plhs[0] = vxCreateDoubleScalar(nrhs);
}

TEST_F(HandleMethodsTest, GetdispCallsTheInterpreterFunction) {
  vcos::FunctionDispatcher::instance().registerBuiltin("sggetdisp", &fakeGetdisp);
  Arr self(omCreateVCOSScalar(line)), extra(vxCreateDoubleScalar(1));
  vxArray* out[1] = {nullptr};
  const vxArray* in[] = {self.get(), extra.get()};
  omCallMethod("vantel.graphics.Graphics", "getdisp", COSGetPublicClient(), 1, out, 2, in, true);
  Arr result(out[0]);
  vcos::FunctionDispatcher::instance().unregisterBuiltin("sggetdisp");
  EXPECT_EQ(dispCalls, 1);
  EXPECT_EQ(vxGetScalar(result.get()), 2.0);
}

}  // namespace
}  // namespace sgtest::classes
