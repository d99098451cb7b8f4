// Default-value names: both forms parsed into their fields, the compat form
// that names a field of the default store, and the questions asked of a
// name before it is parsed.
#include <gtest/gtest.h>

#include <stdexcept>

#include "sgutils/defaults/BadDefaultPropNameException.h"
#include "sgutils/defaults/DefaultPropString.h"
#include "support/ErrorId.h"

namespace {

using sgtest::errorId;
using sgutils::DefaultPropString;

struct Fields {
  std::string prefix, ns, cls, prop;
  bool operator==(const Fields&) const = default;
};
Fields fieldsOf(const DefaultPropString& d) {
  return {d.getPrefix(), d.getNamespaceName(), d.getClassName(), d.getPropName()};
}
std::ostream& operator<<(std::ostream& os, const Fields& f) {
  return os << f.prefix << "|" << f.ns << "|" << f.cls << "|" << f.prop;
}

TEST(DefaultPropString, CompactNamesFindTheirClassWhateverTheCase) {
  const Fields line{"default", "vantel.graphics.primitive", "Line", "Color"};
  EXPECT_EQ(fieldsOf(DefaultPropString("defaultLineColor", false)), line);
  EXPECT_EQ(fieldsOf(DefaultPropString("DefaultLineColor", false)), line) << "the prefix is kept in lower case";
  EXPECT_EQ(fieldsOf(DefaultPropString("defaultlinecolor", false)), line);
  EXPECT_EQ(fieldsOf(DefaultPropString("factoryAxesXColor", false)),
            (Fields{"factory", "vantel.graphics.axis", "Axes", "XColor"}));
  // Nothing is left for the property: found on the second try.
  EXPECT_EQ(fieldsOf(DefaultPropString("defaultLine", false)), (Fields{"default", "vantel.graphics.primitive", "Line", ""}));
}

TEST(DefaultPropString, TheLongestShortNameWins) {
  // "histogram2" and "histogram" are both short names.
  const DefaultPropString d("defaultHistogram2FaceColor", false);
  EXPECT_EQ(d.getPropName(), "FaceColor");
  EXPECT_EQ(DefaultPropString("defaultHistogramFaceColor", false).getPropName(), "FaceColor");
  EXPECT_NE(d.getClassName(), DefaultPropString("defaultHistogramFaceColor", false).getClassName());
}

TEST(DefaultPropString, DottedNamesAreTakenAsWritten) {
  const DefaultPropString full("default.vantel.graphics.primitive.Line.Color", false);
  EXPECT_EQ(fieldsOf(full), (Fields{"default", "vantel.graphics.primitive", "Line", "Color"}));
  EXPECT_EQ(full.getAsCanonicalStr(), "default.Line.Color");
  EXPECT_EQ(full.getAsCompatStr(), "defaultLineColor");
  // No namespace: the compat form joins the parts as they are.
  const DefaultPropString bare("default.Line.Color", false);
  EXPECT_EQ(fieldsOf(bare), (Fields{"default", "", "Line", "Color"}));
  EXPECT_EQ(bare.getAsCompatStr(), "defaultLineColor");
  EXPECT_EQ(DefaultPropString("anything.line.color", false).getAsCompatStr(), "anythinglinecolor")
      << "the dotted form neither checks the prefix nor changes case";
  // Two parts: nothing is filled, nothing is raised yet.
  EXPECT_EQ(fieldsOf(DefaultPropString("default.Line", false)), Fields{});
}

TEST(DefaultPropString, CompactAndDottedMeetInTheCompatForm) {
  EXPECT_EQ(DefaultPropString("defaultlinecolor", false).getAsCompatStr(), "defaultLineColor");
  EXPECT_EQ(DefaultPropString("DefaultAxesFontSize", false).getAsCompatStr(), "defaultAxesFontSize");
  EXPECT_EQ(DefaultPropString("vantel.graphics.primitive", "Line", "Color", false).getAsCompatStr(), "LineColor")
      << "the three-part constructor has no prefix";
}

TEST(DefaultPropString, BadNamesAreRefusedByKind) {
  EXPECT_THROW(DefaultPropString("defLineColor", false), sgutils::BadDefaultPropNameException);
  EXPECT_THROW(DefaultPropString("otherLineColor", false), sgutils::BadDefaultPropNameException);
  EXPECT_EQ(errorId([] { DefaultPropString("default", false); }), "VANTEL:sgutils:EmptyClassName");
  EXPECT_EQ(errorId([] { DefaultPropString("defaultNoSuchClassColor", false); }), "VANTEL:sgutils:InvalidClassName");
}

TEST(DefaultPropString, QuestionsAskedBeforeParsing) {
  EXPECT_TRUE(DefaultPropString::isDefaultProp("DefaultLineColor"));
  EXPECT_TRUE(DefaultPropString::isDefaultProp("defaultx"));
  EXPECT_FALSE(DefaultPropString::isDefaultProp("DEFAULTLINECOLOR")) << "only two spellings of the first letter";
  EXPECT_FALSE(DefaultPropString::isDefaultProp("defaul"));
  EXPECT_TRUE(DefaultPropString::isFactoryProp("FactoryLineColor"));
  EXPECT_FALSE(DefaultPropString::isFactoryProp("defaultLineColor"));

  EXPECT_TRUE(DefaultPropString::queryingAllClassDefaults("defaultLine"));
  EXPECT_TRUE(DefaultPropString::queryingAllClassDefaults("defaultLi")) << "a beginning of a short name";
  EXPECT_FALSE(DefaultPropString::queryingAllClassDefaults("defaultLineColor"));
  EXPECT_THROW(DefaultPropString::queryingAllClassDefaults("def"), std::out_of_range);

  EXPECT_TRUE(DefaultPropString("defaultFigurePARENT", false).isSettingDefaultParent());
  EXPECT_FALSE(DefaultPropString("defaultFigureColor", false).isSettingDefaultParent());
}

}  // namespace
