#include <functional>
#include <memory>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/Component.h"
#include "fuzzylogic/framework/Exception.h"

namespace fzy {
namespace {

std::string Log;

/// Writes down what it is told, by the names of both, and whether the other is still whole.
class TPart final : public TComponent {
 public:
  explicit TPart(const char* name, TComponent* owner = nullptr) : TComponent(owner) {
    SetName(name);
  }
  ~TPart() override {
    Destroying();
    Log += '~' + GetName().Utf8() + ' ';
  }
  TString ClassName() const override { return "TPart"; }
  using TComponent::Loading;

  void Notification(TComponent* component, TOperation operation) override {
    Log += GetName().Utf8() + (operation == opInsert ? '+' : '-') + component->GetName().Utf8();
    Log += operation == opRemove && !dynamic_cast<TPart*>(component) ? " broken " : " ";
    if (const auto handler = Handler) handler(component);
  }

  std::function<void(TComponent*)> Handler;
};

TEST(Component, OwnerFreesWhatItOwnsAndIsToldOfWhatGoesBefore) {
  Log.clear();
  {
    TPart owner("O");
    auto* first = new TPart("A", &owner);
    new TPart("B", first);
    auto* second = new TPart("C", &owner);
    EXPECT_EQ(first->GetOwner(), &owner);
    EXPECT_EQ(owner.GetComponent(1), second);
    second->Free();
    TPart onStack("D", &owner);
    EXPECT_EQ(owner.GetComponentCount(), 2);
  }
  EXPECT_EQ(Log, "O+ A+ O+ O-C ~C O+ O-D ~D ~O ~A ~B ");
}

TEST(Component, FreeNotificationReachesTheOtherSideOnceWhicheverGoesFirst) {
  for (const bool backwards : {false, true}) {
    auto first = std::make_unique<TPart>("1");
    auto second = std::make_unique<TPart>("2");
    auto third = std::make_unique<TPart>("3");
    auto mutual = std::make_unique<TPart>("4");
    const auto watch = [&](TPart* one, TPart* other) {
      (backwards ? other : one)->FreeNotification(backwards ? one : other);
    };
    for (TPart* other : {second.get(), third.get(), second.get()}) watch(first.get(), other);
    for (TPart* nobody : {first.get(), static_cast<TPart*>(nullptr)})
      first->FreeNotification(nobody);
    (backwards ? first : third)->RemoveFreeNotification((backwards ? third : first).get());
    first->FreeNotification(mutual.get());
    mutual->FreeNotification(first.get());
    first->RemoveFreeNotification(mutual.get());
    Log.clear();
    first.reset();
    EXPECT_TRUE(Log == "2-1 4-1 ~1 " || Log == "4-1 2-1 ~1 ") << Log;
    Log.clear();
    second.reset();
    third.reset();
    mutual.reset();
    EXPECT_EQ(Log, "~2 ~3 ~4 ");
  }
}

TEST(Component, StatesComeAndGo) {
  TPart owner("O");
  owner.SetDesigning(true);
  TPart child("A", &owner);
  child.Loading();
  EXPECT_EQ(child.GetComponentState(), (TComponentState{csDesigning, csLoading}));
  child.SetDesigning(false);
  child.Loaded();
  EXPECT_TRUE(child.GetComponentState().IsEmpty());
  bool seen = false;
  owner.Handler = [&](TComponent* component) { seen = component->Is(csDestroying); };
  { const TPart passing("B", &owner); }
  EXPECT_TRUE(seen);
}

// Watchers and owners that do their worst while a component goes. Whoever is still there afterwards
// is freed by the test, which must find all of them gone then, once.
TEST(Component, GoesWhateverTheOnesItTellsDo) {
  TPart* owner = nullptr;
  TPart* other = nullptr;
  bool byFree = false;
  const std::pair<const char*, std::function<void(TPart*)>> deeds[] = {
      {"throws", [](TPart*) { throw EException("watcher"); }},
      {"frees another watcher", [&](TPart*) { std::exchange(other, new TPart("x"))->Free(); }},
      {"frees the owner", [&](TPart*) { owner->Free(); }},
      {"frees what goes",
       [&](TPart* going) {
         if (byFree) going->Free();
       }},
      {"watches again", [&](TPart* going) { going->FreeNotification(other); }},
  };
  for (const auto& [name, deed] : deeds) {
    for (const char handling : {'O', 'w'}) {
      for (const char going : {'O', 'C', 'S'}) {  // S: the child, at the end of a scope
        SCOPED_TRACE(std::string(name) + ", told is " + handling + ", going " + going);
        byFree = going != 'S';
        owner = new TPart("O");
        auto* child = new TPart("C", owner);
        other = new TPart("o");
        TPart watcher("w");
        child->FreeNotification(&watcher);
        child->FreeNotification(other);
        (handling == 'O' ? owner : &watcher)->Handler = [&](TComponent* part) {
          deed(static_cast<TPart*>(part));
        };
        Log.clear();
        if (going == 'S')
          delete child;
        else
          (going == 'O' ? owner : child)->Free();
        if (Log.find("~O") == std::string::npos) owner->Free();
        other->Free();
        for (const char* gone : {"~O ", "~C ", "~o "}) {
          const std::size_t at = Log.find(gone);
          EXPECT_NE(at, std::string::npos) << Log;
          EXPECT_EQ(Log.find(gone, at + 1), std::string::npos) << Log;
        }
        EXPECT_NE(Log.find("w-C "), std::string::npos) << Log;
      }
    }
  }
}

TEST(Component, OwnerThatRefusesAChildForgetsIt) {
  TPart owner("O");
  owner.Handler = [](TComponent*) { throw EException("full"); };
  EXPECT_THROW(TPart("A", &owner), EException);
  EXPECT_EQ(owner.GetComponentCount(), 0);
}

}  // namespace
}  // namespace fzy
