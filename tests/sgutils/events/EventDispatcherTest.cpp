// The native publish and subscribe registry: name matching with the
// trailing wildcard, order of calls, subscriptions that end with their
// Listener, and changes made from inside a send.
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "sgutils/EventDispatcher/EventDispatcher.h"

namespace {

using sgutils::EventData;
using sgutils::EventDispatcher;

struct Journal {
  std::vector<std::string> calls;
  EventDispatcher::Callback note(std::string who) {
    return [this, who](const std::string& event, const EventData&) { calls.push_back(who + ":" + event); };
  }
};

TEST(EventDispatcher, ExactNamesAndTrailingWildcards) {
  EventDispatcher d;
  Journal j;
  auto ab = d.createListener("Ab", j.note("Ab"));
  auto abStar = d.createListener("Ab*", j.note("Ab*"));
  auto all = d.createListener("*", j.note("*"));
  auto empty = d.createListener("", j.note("empty"));
  const EventData data;
  d.send("Abc", data);
  d.send("Ab", data);
  d.send("", data);
  // Byte order of the names: "*" < "Ab" < "Ab*".
  const std::vector<std::string> expected = {"*:Abc", "Ab*:Abc", "*:Ab", "Ab:Ab", "Ab*:Ab", "*:"};
  EXPECT_EQ(j.calls, expected);
  EXPECT_EQ(d.numListeners("Ab"), 1u) << "the wildcard counted for the exact name";
  EXPECT_EQ(d.numListeners("Ab*"), 1u);
  EXPECT_EQ(abStar.getEvent(), "Ab*");
}

TEST(EventDispatcher, ListenersOfOneNameInTheOrderMadeAndGoneWithTheirHandle) {
  EventDispatcher d;
  Journal j;
  auto first = d.createListener("E", j.note("1"));
  {
    auto second = d.createListener("E", j.note("2"));
    auto third = d.createListener("E", j.note("3"));
    d.send("E", EventData());
  }
  d.send("E", EventData());
  const std::vector<std::string> expected = {"1:E", "2:E", "3:E", "1:E"};
  EXPECT_EQ(j.calls, expected);
  EXPECT_EQ(d.numListeners("E"), 1u);

  EventDispatcher::Listener moved = std::move(first);
  EXPECT_EQ(d.numListeners("E"), 1u) << "a move ended the subscription";
  moved = EventDispatcher::Listener();
  EXPECT_EQ(d.numListeners("E"), 0u) << "assignment kept what the target held";
}

TEST(EventDispatcher, ChangesDuringASendTakeEffectAfterIt) {
  EventDispatcher d;
  Journal j;
  EventDispatcher::Listener later, added;
  auto remover = d.createListener("E", [&](const std::string&, const EventData&) {
    j.calls.push_back("remover");
    later = EventDispatcher::Listener();             // removed, still called in this send
    added = d.createListener("E", j.note("added"));  // not called in this send
    EXPECT_EQ(d.numListeners("E"), 2u);
  });
  later = d.createListener("E", j.note("later"));
  d.send("E", EventData());
  const std::vector<std::string> firstSend = {"remover", "later:E"};
  EXPECT_EQ(j.calls, firstSend);
  j.calls.clear();
  remover = EventDispatcher::Listener();
  d.send("E", EventData());
  const std::vector<std::string> secondSend = {"added:E"};
  EXPECT_EQ(j.calls, secondSend);
}

TEST(EventDispatcher, AnExceptionEndsTheSendAndListenersMayOutliveTheDispatcher) {
  EventDispatcher::Listener survivor;
  Journal j;
  {
    EventDispatcher d;
    auto boom = d.createListener("E", [](const std::string&, const EventData&) { throw std::runtime_error("boom"); });
    auto after = d.createListener("E", j.note("after"));
    EXPECT_THROW(d.send("E", EventData()), std::runtime_error);
    EXPECT_TRUE(j.calls.empty()) << "a later callback ran after an exception";
    EventDispatcher copy = d;
    survivor = copy.createListener("F", j.note("f"));
    d.send("F", EventData());
    EXPECT_EQ(j.calls.size(), 1u) << "copies share one registry";
  }
  survivor = EventDispatcher::Listener();  // the registry is gone: nothing to do, nothing raised
}

}  // namespace
