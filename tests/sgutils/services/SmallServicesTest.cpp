// The small services: language answers by locale name, the default fonts
// that follow them, the one installed text editor, and the two look-ups on
// graphics objects.
#include <gtest/gtest.h>

#include <string>

#include "sgutils/propinfos/PropertyModelClasses.h"
#include "sgutils/services/FormbenchFigureUtils.h"
#include "sgutils/services/NullTextEditManager.h"
#include "sgutils/services/PlatformInfo.h"
#include "sgutils/services/UIChildInterface.h"
#include "vcos/COSPropT.h"

namespace {

namespace info = sgutils::PlatformInfo;

// Replaces the locale name for a scope.
class LocaleAs {
 public:
  explicit LocaleAs(std::string name) : saved_(info::localeName()) { info::setLocaleNameForTesting(std::move(name)); }
  ~LocaleAs() { info::setLocaleNameForTesting(saved_); }

 private:
  std::string saved_;
};

TEST(PlatformInfo, ExactlyOneSystem) {
  EXPECT_EQ(info::isWindows() + info::isLinux() + info::isMac(), 1);
#if defined(__linux__)
  EXPECT_TRUE(info::isLinux());
#endif
}

TEST(PlatformInfo, LanguageByTheFirstFiveCharactersOfTheLocale) {
  {
    LocaleAs ja("ja_JP.UTF-8");
    EXPECT_TRUE(info::isJA());
    EXPECT_FALSE(info::isZH());
    EXPECT_EQ(info::getDefaultFontPointSize(), 9.0);
    EXPECT_EQ(info::getDefaultFontName(), u"MS UI Gothic");
    EXPECT_EQ(info::getDefaultFixedWidthFontName(), u"\uFF2D\uFF33 \u30B4\u30B7\u30C3\u30AF");
  }
  {
    LocaleAs zh("zh_CN");
    EXPECT_TRUE(info::isZH());
    EXPECT_EQ(info::getDefaultFixedWidthFontName(), u"SimHei");
    EXPECT_EQ(info::getDefaultFontPointSize(), 8.0);
  }
  {
    LocaleAs ko("ko_KR.eucKR");
    EXPECT_EQ(info::getDefaultFixedWidthFontName(), u"GulimChe");
  }
  for (const char* other : {"ja", "ja_J", "", "en_US.UTF-8", "C"}) {
    LocaleAs l(other);
    EXPECT_FALSE(info::isJA() || info::isZH() || info::isKO()) << other;
    EXPECT_EQ(info::getDefaultFontName(), u"MS Sans Serif") << other;
    EXPECT_EQ(info::getDefaultFixedWidthFontName(), u"Courier New") << other;
  }
}

TEST(TextEditManager, TheNullEditorInstallsItself) {
  sgutils::test::NullTextEditManager* first = sgutils::test::NullTextEditManager::createInstance();
  EXPECT_EQ(sgutils::TextEditManager::getTextEditManager(), first);
  sgutils::test::NullTextEditManager* second = sgutils::test::NullTextEditManager::createInstance();
  EXPECT_NE(second, first);
  EXPECT_EQ(sgutils::TextEditManager::getTextEditManager(), second);
  first->startTextEditing();  // an earlier instance is still alive
}

TEST(ObjectQueries, FigureBuilderMarkAndUserInterfaceSide) {
  using namespace sgtest::propmodel;
  COSInterfacePtr object = makeObject(kFlagsClass);
  EXPECT_FALSE(sgutils::FormbenchFigureUtils::hasFormbenchFigureProperty(object));
  object->addDynamicProperty(new COSPropT(object->getClass()->getID(), COSID("FormbenchFigure"), COSDataTypePtr("any")));
  EXPECT_TRUE(sgutils::FormbenchFigureUtils::hasFormbenchFigureProperty(object));
  EXPECT_FALSE(sgutils::FormbenchFigureUtils::hasFormbenchFigureProperty(COSInterfacePtr()));
  // The test class's Graphics block is no user-interface child.
  EXPECT_EQ(sgutils::UIChildInterface::getUIChildInterface(object), nullptr);
  object->deleteObject(COSGetPublicClient());
}

}  // namespace
