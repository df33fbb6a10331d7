#include <functional>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/Collection.h"
#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/framework/StringList.h"
#include "fuzzylogic/framework/UpdateBlock.h"

namespace fzy {
namespace {

class TNode final : public TCollectionItem {
 public:
  static inline int Alive = 0;

  explicit TNode(std::string name = "") : FName(std::move(name)) { ++Alive; }
  ~TNode() override {
    const TPin pinned(this);  // as any operation does that a destructor calls
    --Alive;
  }

  TString ClassName() const override { return "TNode"; }
  void Assign(TPersistent* source) override {
    auto* node = dynamic_cast<TNode*>(source);
    if (!node) return TCollectionItem::Assign(source);
    SetName(node->FName);
  }
  const std::string& GetName() const { return FName; }
  void SetName(std::string name) {
    FName = std::move(name);
    Changed(false);
  }
  void TellAll() { Changed(true); }

  bool Joined = false;  // as the list's notifications tell it

 private:
  std::string FName;
};

/// Writes down each call of a hook with what is to be seen at that moment: "hook name@index", or
/// "update[ABC]" with the items in the list. A handler may then do as it likes.
class TNodes final : public TCollection {
 public:
  explicit TNodes(const std::string& names = "") {
    ++Alive;
    for (const char name : names) Add(std::string(1, name));
    Log.clear();
  }

  ~TNodes() override { --Alive; }
  static inline int Alive = 0;

  TString ClassName() const override { return "TNodes"; }
  TNode* At(int index) const { return static_cast<TNode*>(ItemAt(index)); }
  TNode* Add(const std::string& name) {
    const TPin self(this);
    auto* node = new TNode(name);
    const TPin pinned(node);
    node->SetCollection(this);
    return node->IsFreed() ? nullptr : node;
  }
  void Insert(int index, const std::string& name) {
    const TPin self(this);
    if (TNode* node = Add(name)) node->SetIndex(index);
  }

  std::string Names() const {
    std::string names;
    for (int i = 0; i < GetCount(); ++i) names += At(i)->GetName();
    return names;
  }
  std::string TakeLog() { return std::exchange(Log, {}); }

  std::function<void(const std::string& hook, TNode* item)> Handler;

 protected:
  TCollectionItem* AddItem() override { return Add(""); }
  void Update(TCollectionItem* item) override { Tell("update", static_cast<TNode*>(item)); }
  void Notify(TCollectionItem* item, TCollectionNotification action) override {
    const char* hook = action == cnAdded        ? "added"
                       : action == cnExtracting ? "extracting"
                                                : "deleting";
    auto* node = static_cast<TNode*>(item);
    EXPECT_EQ(node->Joined, action != cnAdded) << "told twice, or never of the other";
    node->Joined = action != cnExtracting;
    Tell(hook, node);
  }

 private:
  void Tell(const std::string& hook, TNode* item) {
    if (!Log.empty()) Log += ' ';
    Log += hook;
    Log +=
        item ? ' ' + item->GetName() + '@' + std::to_string(item->GetIndex()) : '[' + Names() + ']';
    if (const auto handler = Handler) handler(hook, item);
    ++FTold;  // a list goes on after its handlers, even the last time
  }

  std::string Log;
  int FTold = 0;
};

std::string Error(const std::function<void()>& act) {
  try {
    act();
  } catch (const EException& error) {
    return error.what();
  }
  return "";
}

struct TOperationCase {
  const char* Name;
  std::function<void(TNodes&)> Run;
  const char* Log;
};

TNodes* Other = nullptr;  // a second list that operations and handlers use

const TOperationCase Operations[] = {
    {"add", [](TNodes& list) { list.Add("D"); }, "added D@3 update[ABCD]"},
    {"insert", [](TNodes& list) { list.Insert(0, "D"); }, "added D@3 update[ABCD] update[DABC]"},
    {"delete", [](TNodes& list) { list.Delete(1); }, "deleting B@1 extracting B@1 update[AC]"},
    {"free", [](TNodes& list) { list.At(1)->Free(); }, "extracting B@1 update[AC]"},
    {"clear", [](TNodes& list) { list.Clear(); },
     "extracting C@2 extracting B@1 extracting A@0 update[]"},
    {"move up", [](TNodes& list) { list.At(0)->SetIndex(2); }, "update[BCA]"},
    {"move down", [](TNodes& list) { list.At(2)->SetIndex(0); }, "update[CAB]"},
    {"stay", [](TNodes& list) { list.At(1)->SetIndex(1); }, ""},
    {"change", [](TNodes& list) { list.At(1)->SetName("X"); }, "update X@1"},
    {"change of all", [](TNodes& list) { list.At(1)->TellAll(); }, "update[ABC]"},
    {"assign", [](TNodes& list) { list.Assign(Other); },
     "extracting C@2 extracting B@1 extracting A@0 added @0 added @1 update[XY]"},
    {"assign itself", [](TNodes& list) { list.Assign(&list); }, ""},
    {"leave", [](TNodes& list) { list.At(0)->SetCollection(Other); }, "extracting A@0 update[BC]"},
    {"leave and return",
     [](TNodes& list) {
       const TPin self(&list);
       TNode* node = list.At(0);
       const TPin pinned(node);
       node->SetCollection(Other);
       node->SetCollection(&list);
       node->Free();
     },
     "extracting A@0 update[BC] added A@2 update[BCA] extracting A@2 update[BC]"},
    {"join", [](TNodes& list) { Other->At(0)->SetCollection(&list); }, "added X@3 update[ABCX]"},
    {"blocks",
     [](TNodes& list) {
       TUpdateBlock outer(list);
       list.Add("D");
       {
         TUpdateBlock inner(list);
         if (list.GetCount() > 1) list.Delete(1);
       }
       if (list.GetCount() > 1) list.At(0)->SetName("Z");
       if (list.GetCount() > 1) list.At(0)->SetIndex(1);
       outer.Close();
     },
     "added D@3 deleting B@1 extracting B@1 update[CZD]"},
    {"empty block", [](TNodes& list) { TUpdateBlock(list).Close(); }, "update[ABC]"},
    {"block too many closed", [](TNodes& list) { list.EndUpdate(); }, ""},
};

TEST(Collection, TellsWhatHappensInOrder) {
  for (const TOperationCase& operation : Operations) {
    TNodes list("ABC");
    TNodes other("XY");
    Other = &other;
    operation.Run(list);
    EXPECT_EQ(list.TakeLog(), operation.Log) << operation.Name;
    EXPECT_FALSE(list.IsUpdating()) << operation.Name;
  }
  TNodes empty;
  empty.Clear();
  EXPECT_EQ(empty.TakeLog(), "");
  EXPECT_EQ(TNode::Alive, 0) << "a list that goes frees its items";
}

// What a handler does with the item it is told of, or with the first when it is told of the list.
struct THandlerCase {
  const char* Name;
  std::function<void(TNodes&, TNode&)> Act;
};

const THandlerCase Handlers[] = {
    {"throws", [](TNodes&, TNode&) { throw EException("handler"); }},
    {"frees the item", [](TNodes&, TNode& item) { item.Free(); }},
    {"frees the first", [](TNodes& list, TNode&) { list.At(0)->Free(); }},
    {"deletes the last", [](TNodes& list, TNode&) { list.Delete(list.GetCount() - 1); }},
    {"takes the item away", [](TNodes&, TNode& item) { item.SetCollection(Other); }},
    {"takes the item out and in again",
     [](TNodes& list, TNode& item) {
       item.SetCollection(nullptr);
       item.SetCollection(&list);
     }},
    {"moves the item",
     [](TNodes& list, TNode& item) { item.SetIndex(list.GetCount() - 1 - item.GetIndex()); }},
    {"adds", [](TNodes& list, TNode&) { list.Add("+"); }},
    {"inserts in front", [](TNodes& list, TNode&) { list.Insert(0, "+"); }},
    {"frees the first and adds",
     [](TNodes& list, TNode&) {
       list.At(0)->Free();
       list.Add("+");
     }},
    {"clears", [](TNodes& list, TNode&) { list.Clear(); }},
    {"assigns", [](TNodes& list, TNode&) { list.Assign(Other); }},
    {"takes the first away", [](TNodes& list, TNode&) { list.At(0)->SetCollection(Other); }},
    {"empties the other list", [](TNodes&, TNode&) { Other->Clear(); }},
    {"frees the sender", [](TNodes& list, TNode&) { list.Free(); }},
};

void ExpectSound(TNodes& list) {
  EXPECT_FALSE(list.IsUpdating());
  for (int i = 0; i < list.GetCount(); ++i) {
    EXPECT_EQ(list.At(i)->GetIndex(), i);
    EXPECT_EQ(list.At(i)->GetCollection(), &list);
    EXPECT_FALSE(list.At(i)->IsFreed());
  }
  list.TakeLog();
  const int count = list.GetCount();
  list.Add("N");
  const std::string at = "added N@" + std::to_string(count);
  EXPECT_EQ(list.TakeLog(), at + " update[" + list.Names() + "]");
}

void Survive(const TOperationCase& operation, const std::string& hook, const THandlerCase& handler,
             int times) {
  TNodes& list = *new TNodes("ABC");
  TNodes other("XY");
  Other = &other;
  int acted = 0;
  list.Handler = [&](const std::string& told, TNode* item) {
    if (told != hook || acted == times || list.GetCount() == 0) return;
    ++acted;
    handler.Act(list, item ? *item : *list.At(0));
  };
  const std::string error = Error([&] { operation.Run(list); });

  const std::string doing = handler.Name;
  EXPECT_EQ(error, doing == "throws" && acted > 0 ? "handler" : "");
  const std::string kept = other.Names();
  ExpectSound(other);
  EXPECT_EQ(TNodes::Alive, doing == "frees the sender" && acted > 0 ? 1 : 2);
  if (TNodes::Alive == 1) return;
  list.Handler = nullptr;
  const std::string log = list.TakeLog();
  if (!error.empty()) {
    EXPECT_TRUE(log.ends_with("update[" + list.Names() + "]") || log == "update X@1")
        << "what was done is told to the end: " << log;
  }
  if (operation.Name == std::string("clear") && hook == "extracting") {
    EXPECT_EQ(list.Names().find_first_of("ABC"), std::string::npos) << list.Names();
    EXPECT_EQ(kept, doing == "takes the first away" && times == 1 ? "XYA" : kept);
    const bool adding = doing.find("add") != std::string::npos || doing == "inserts in front";
    EXPECT_EQ(list.Names(),
              adding ? std::string(static_cast<std::size_t>(acted), '+') : list.Names());
  }
  ExpectSound(list);
  list.Free();
}

// Every handler at every hook of every operation; the handler acts once, or also on what its own
// deeds bring about.
TEST(Collection, SurvivesWhateverHandlersDo) {
  for (const TOperationCase& operation : Operations) {
    for (const char* hook : {"added", "extracting", "deleting", "update"}) {
      for (const THandlerCase& handler : Handlers) {
        for (const int times : {1, 3}) {
          SCOPED_TRACE(std::string(operation.Name) + ", at " + hook + " a handler that " +
                       handler.Name + ", times: " + std::to_string(times));
          Survive(operation, hook, handler, times);
          ASSERT_EQ(TNode::Alive, 0);
        }
      }
    }
  }
}

TEST(Collection, RefusesWhatItDoesNotHoldOrKnow) {
  TNodes list("AB");
  TStringList lines;
  for (const int index : {-1, 2}) {
    const std::string message = "List index out of bounds (" + std::to_string(index) + ")";
    EXPECT_EQ(Error([&] { list.Delete(index); }), message);
    EXPECT_EQ(Error([&] { list.At(0)->SetIndex(index); }), message);
  }
  EXPECT_EQ(Error([&] { list.Assign(&lines); }), "Cannot assign a TStringList to a TNodes");
  EXPECT_EQ(Error([&] { lines.Assign(list.At(0)); }), "Cannot assign a TNode to a TStringList");
  EXPECT_EQ(Error([&] { list.At(0)->Assign(nullptr); }), "Cannot assign a nil to a TNode");
  EXPECT_THROW(list.Assign(list.At(0)), EConvertError);
  EXPECT_EQ(list.Names() + list.TakeLog(), "AB");
}

TEST(Pin, KeepsMemoryUntilTheLastPinGoesButTellsAtOnce) {
  TNodes list("AB");
  TNode* node = list.At(0);
  {
    TPin first(node);
    {
      const TPin second(node);
      const TPin moved(std::move(first));
      node->Free();
      EXPECT_EQ(list.TakeLog(), "extracting A@0 update[B]");
      node->Free();
      node->SetCollection(&list);
      EXPECT_EQ(list.Names() + list.TakeLog(), "B") << "what was freed joins nothing again";
      EXPECT_TRUE(node->IsFreed());
    }
    EXPECT_EQ(TNode::Alive, 1);
  }

  auto* ending = new TNodes("CD");
  const TPin pinned(ending);
  ending->Free();
  EXPECT_EQ(ending->TakeLog(), "extracting D@1 extracting C@0") << "but of no change";
  EXPECT_EQ(TNode::Alive, 1);
}

TEST(Owned, FreesItsItemUnlessItWentEarlierOrWasGivenUp) {
  TNodes list("AB");
  TNode* kept = list.At(1);
  list.Handler = [](const std::string&, TNode*) { throw EException("handler"); };
  { const TOwned<TNode> owned(list.At(0)); }
  EXPECT_EQ(list.TakeLog(), "extracting A@0 update[B]");
  list.Handler = nullptr;

  TOwned<TNode> early(list.Add("C"));
  TOwned<TNode> moved = TOwned<TNode>(kept);
  list.Delete(1);
  EXPECT_FALSE(early);
  EXPECT_EQ(early.Release(), nullptr);
  early = std::move(moved);
  EXPECT_EQ(early.Release(), kept);
  early.Reset();
  EXPECT_EQ(list.Names(), "B") << "given up, so it stays";

  TOwned<TNode> orphan;
  {
    TNodes gone("D");
    orphan = TOwned<TNode>(gone.At(0));
  }
  EXPECT_FALSE(orphan);
  EXPECT_EQ(TNode::Alive, 2) << "its memory waits for the handle";
  orphan.Reset();
  EXPECT_EQ(TNode::Alive, 1);
}

}  // namespace
}  // namespace fzy
