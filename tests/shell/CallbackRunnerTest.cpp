// Graphics callbacks that hold values of the language, run through the data
// types API against a real object: handles and cells get the source and an
// event data object, texts run in the base workspace, errors keep their
// identifiers, and the runner lives exactly as long as the interpreters.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include <foundation/core/except/IMsgIDException.h>
#include <sgdatatypes/sgdatatypes.h>
#include <vcos/FunctionDispatcher.h>
#include <vcos/ObjectArray.h>
#include <vcos/vcos.h>
#include <vx/vx.h>

#include "sgsh/Interpreter.h"
#include "sgsh/Output.h"
#include "support/ErrorId.h"

namespace sgsh {
namespace {

using graphics::datatype::VCallback;

class PackageInfo final : public COSNamespaceInfo {
 public:
  const char* getName() const override { return "sgcb"; }
};

// A handle class with a Callback property "ClickFcn" run on the event
// "Click", and a free "Label" that callbacks write into.
class ButtonInfo final : public COSClassInfo {
 public:
  const char* getName() const override { return "Button"; }
  void initializeClass(COSClass* c, const COSClient*) override {
    c->addSuperclass(COSID("handle"));
    c->addProperty(new COSPropT(c->getID(), COSID("ClickFcn"), COSDataTypePtr(graphics::datatype::kCallbackType)));
    c->addProperty(new COSPropT(c->getID(), COSID("Label"), COSDataTypePtr("any")));
    c->addEvent(new COSEventT(COSID("Click")));
  }
};

// sgcbClick(h): fires "Click" on h, so that scripts can click from inside
// their functions.
void clickBuiltin(int, vxArray*[], int, const vxArray* prhs[]) {
  omGetLiveArrayElement(prhs[0], 0)->notifyEvent(COSGetPublicClient(), COSID("Click"), nullptr);
}

using sgtest::errorId;

class CallbackRunnerTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    static const bool registered = [] {
      VLInitialize_sgdatatypes();
      COSPackage::addNamespace(new PackageInfo)->addClass(new ButtonInfo);
      vcos::FunctionDispatcher::instance().registerBuiltin("sgcbClick", &clickBuiltin);
      return true;
    }();
    (void)registered;
  }

  void SetUp() override {
    button_ = COSClass::getClass(COSID("sgcb.Button"))->createInstance(COSGetPublicClient());
    listener_ = graphics::datatype::createListener("ClickFcn", /*passEventData=*/true, /*allowRecursion=*/false);
    button_->addListener(COSID("Click"), COSListener::toListener(listener_));
    in_.setVariable("b", Value(omCreateVCOSScalar(button_)));
  }
  void TearDown() override { button_->removeListener(COSID("Click"), COSListener::toListener(listener_)); }

  void click() { button_->notifyEvent(COSGetPublicClient(), COSID("Click"), nullptr); }
  // The callback stored in the button, as the data type holds it.
  VCallback stored() {
    COSPropInfo* p = button_->findPropertyInfo(COSID("ClickFcn"));
    COSValue v = p->getValue(button_.get());
    VCallback cb = *v.asPointer<const VCallback>();
    p->releaseValue(button_.get(), v);
    return cb;
  }
  const vxArray* var(const std::string& name) {
    const Value* v = in_.findVariable(name);
    EXPECT_NE(v, nullptr) << name;
    return v ? v->get() : nullptr;
  }
  double scalar(const std::string& name) { return vxGetScalar(var(name)); }
  std::string text(const std::string& name) { return vxArrayToStdString(var(name)); }

  Interpreter in_;  // first: it registers the built-in classes the button derives from
  COSInterfacePtr button_;
  COSInterfacePtr listener_;
};

TEST_F(CallbackRunnerTest, HandleGetsTheSourceObjectAndAnEventDataObject) {
  in_.run("b.ClickFcn = @(src, evt) set(src, 'Label', {src == b, size(src), class(evt), evt.EventName});");
  EXPECT_EQ(stored().kind(), VCallback::Kind::FunctionHandle);
  click();
  in_.run("same = b.Label{1}; dims = b.Label{2}; evtClass = b.Label{3}; evtName = b.Label{4};");
  EXPECT_TRUE(vxIsLogicalScalarTrue(var("same")));
  EXPECT_EQ(vxGetNumberOfElements(var("dims")), 2u);
  EXPECT_EQ(vxGetPr(var("dims"))[0] * vxGetPr(var("dims"))[1], 1);
  EXPECT_EQ(text("evtClass"), "event.EventData");
  EXPECT_EQ(text("evtName"), "Click");

  // Without event data the handle gets an empty double in its place.
  in_.run("b.ClickFcn = @(src, evt) set(src, 'Label', {class(evt), isempty(evt)});");
  stored().execute(button_.get(), nullptr);
  in_.run("evtClass = b.Label{1}; none = b.Label{2};");
  EXPECT_EQ(text("evtClass"), "double");
  EXPECT_TRUE(vxIsLogicalScalarTrue(var("none")));
}

TEST_F(CallbackRunnerTest, CellPassesItsExtraArgumentsAfterSourceAndEvent) {
  in_.run("b.ClickFcn = {@(src, evt, a, c) set(src, 'Label', a + c), 2, 40};");
  EXPECT_EQ(stored().kind(), VCallback::Kind::CellWithArguments);
  click();
  in_.run("sum = b.Label;");
  EXPECT_EQ(scalar("sum"), 42);

  // The head may name a script function instead.
  in_.run(
      "b.ClickFcn = {'tagIt', 'tagged'};\n"
      "function tagIt(src, evt, tag)\n"
      "  set(src, 'Label', [tag ' by ' evt.EventName]);\n"
      "end\n");
  click();
  in_.run("tag = b.Label;");
  EXPECT_EQ(text("tag"), "tagged by Click");
}

TEST_F(CallbackRunnerTest, TextRunsInTheBaseWorkspaceEvenWhileAFunctionRuns) {
  in_.run(
      "hits = 0;\n"
      "b.ClickFcn = 'hits = hits + 1; from = helper();';\n"
      "function r = helper()\n"
      "  r = 'script function';\n"
      "end\n"
      "function seen = poke(h)\n"
      "  hits = -1;\n"
      "  sgcbClick(h);\n"
      "  seen = hits;\n"
      "end\n");
  EXPECT_EQ(stored().kind(), VCallback::Kind::Text);
  click();
  EXPECT_EQ(scalar("hits"), 1);
  EXPECT_EQ(text("from"), "script function");

  // Clicked from inside a function: the text changes the base workspace and
  // the function's own variables are back afterwards.
  in_.run("local = poke(b);");
  EXPECT_EQ(scalar("hits"), 2);
  EXPECT_EQ(scalar("local"), -1);

  // Statements without a semicolon display as they would at the prompt.
  in_.run("b.ClickFcn = 'hits';");
  std::string printed;
  {
    OutputCapture capture([&](std::string_view s) { printed += s; });
    click();
  }
  EXPECT_NE(printed.find("hits"), std::string::npos) << printed;
}

TEST_F(CallbackRunnerTest, ErrorsInsideCallbacksKeepTheirIdentifiers) {
  in_.run("b.ClickFcn = @(src, evt) error('cb:handle', 'from a handle');");
  EXPECT_EQ(errorId([&] { click(); }), "cb:handle");
  in_.run("b.ClickFcn = {@(src, evt, x) x(5), [1 2]};");
  EXPECT_EQ(errorId([&] { click(); }), errorId([&] { in_.run("x = [1 2]; x(5)"); }));
  in_.run("b.ClickFcn = 'error(''cb:text'', ''from a text'')';");
  EXPECT_EQ(errorId([&] { click(); }), "cb:text");

  // A script catches the error of a callback it set off.
  in_.run("try\n  sgcbClick(b);\ncatch err\n  id = err.identifier;\nend\n");
  EXPECT_EQ(text("id"), "cb:text");
  EXPECT_EQ(errorId([&] { in_.run("b.ClickFcn = 'hits = ';"); click(); }), "VANTEL:sgsh:Syntax");
}

TEST(CallbackRunnerLifetime, TheLastInterpreterPutsThePreviousRunnerBack) {
  int outsideRuns = 0;
  VCallback::Runner outside = [&](const vxArray*, COSInterface*, COSEventData*) { ++outsideRuns; };
  VCallback::Runner before = VCallback::setRunner(outside);

  auto first = std::make_unique<Interpreter>();
  auto second = std::make_unique<Interpreter>();
  first->run("h = @(src, evt) error('cb:ran', 'ran in the language');");
  const VCallback cb = VCallback::fromArray(first->findVariable("h")->get());
  first.reset();  // ends before the newer one: the language still runs callbacks
  EXPECT_EQ(errorId([&] { cb.execute(nullptr, nullptr); }), "cb:ran");
  EXPECT_EQ(outsideRuns, 0);
  second.reset();
  cb.execute(nullptr, nullptr);
  EXPECT_EQ(outsideRuns, 1) << "the runner from before the interpreters is back";

  VCallback::setRunner(nullptr);
  EXPECT_EQ(errorId([&] { cb.execute(nullptr, nullptr); }), "VANTEL:datatypes:NoCallbackRunner");
  VCallback::setRunner(std::move(before));
}

}  // namespace
}  // namespace sgsh
