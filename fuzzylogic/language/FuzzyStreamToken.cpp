#include "fuzzylogic/language/FuzzyStreamToken.h"

#include <array>
#include <vector>

#include "fuzzylogic/engine/FuzzySet.h"
#include "fuzzylogic/framework/Messages.h"

namespace fzy {
namespace {

const TString& PunctuationText(int kind) {
  static const auto texts = [] {
    std::array<TString, 128> result;
    for (const char16_t ch : std::u16string_view(u"()[]=&|~")) result[ch] = TString(1, ch);
    return result;
  }();
  return texts[kind >= 0 && kind < 128 ? static_cast<std::size_t>(kind) : 0];
}

#ifdef __SANITIZE_ADDRESS__
constexpr int MostSpares = 0;  // so that a use after the end of a token is seen
#else
constexpr int MostSpares = 64;
#endif

/// The memory of a few tokens that went, for the next ones: a reader holds a handful of tokens at a
/// time and makes millions. Each thread has its own; what is in it is given back when the thread
/// ends.
struct TSpares {
  struct TBlock {
    TBlock* Next;
  };
  TBlock* First;
  int Room;
};
thread_local TSpares Spares{nullptr, 0};

struct TSparesOfThread {
  TSparesOfThread() noexcept { Spares.Room = MostSpares; }
  ~TSparesOfThread() {
    Spares.Room = 0;
    while (TSpares::TBlock* block = Spares.First) {
      Spares.First = block->Next;
      ::operator delete(block);
    }
  }
};

constexpr int FirstPunctuation = 16;

}  // namespace

bool IsOfKind(const IFuzzyStreamToken& token, TFuzzyStreamTokenTypes kinds) {
  const int kind = token.GetDataType();
  return kind >= 0 && kind < FirstPunctuation &&
         kinds.Contains(static_cast<TFuzzyStreamTokenType>(kind));
}

// TFuzzyStreamToken

void* TFuzzyStreamToken::operator new(std::size_t size) {
  if (TSpares::TBlock* block = Spares.First) {
    Spares.First = block->Next;
    ++Spares.Room;
    return block;
  }
  // Without a spare one: the first token of a thread sets its store up.
  [[maybe_unused]] static thread_local const TSparesOfThread ofThread;
  return ::operator new(size);
}

void TFuzzyStreamToken::operator delete(void* memory) noexcept {
  if (Spares.Room == 0) return ::operator delete(memory);
  --Spares.Room;
  Spares.First = new (memory) TSpares::TBlock{Spares.First};
}

TFuzzyStreamToken::~TFuzzyStreamToken() = default;

const TString& TFuzzyStreamToken::GetText() const {
  return HasText() ? TBaseStreamTokenOf::GetText() : PunctuationText(GetDataType());
}

TFuzzyStreamToken::TPayload& TFuzzyStreamToken::Payload() {
  if (!FPayload) FPayload = std::make_unique<TPayload>();
  return *FPayload;
}

std::intptr_t TFuzzyStreamToken::GetTag() const { return FPayload ? FPayload->Tag : 0; }

void TFuzzyStreamToken::SetTag(std::intptr_t value) {
  if (value != GetTag()) Payload().Tag = value;
}

Ref<IBaseStreamToken> TFuzzyStreamToken::Clone() const {
  const Ref<TFuzzyStreamToken> copy = Create();
  copy->Assign(*this);
  return copy;
}

void TFuzzyStreamToken::Assign(const IBaseStreamToken& source) {
  const auto* token = dynamic_cast<const TFuzzyStreamToken*>(&source);
  std::unique_ptr<TPayload> payload;
  if (token && token->FPayload) payload = std::make_unique<TPayload>(*token->FPayload);
  TBaseStreamTokenOf::Assign(source);
  if (!token) return;
  FColumn = token->FColumn;
  FPayload = std::move(payload);
}

bool TFuzzyStreamToken::Equals(const IBaseStreamToken& other) const {
  if (!TBaseStreamTokenOf::Equals(other)) return false;
  const auto* token = dynamic_cast<const TFuzzyStreamToken*>(&other);
  if (!token || GetDataType() == KindOf(fstList)) return ToString() == other.ToString();
  return GetIntfValue() == token->GetIntfValue() && GetObjValue() == token->GetObjValue();
}

TString TFuzzyStreamToken::ToString() const {
  switch (GetDataType()) {
    case KindOf(fstInterface):
      return "<interface>";
    case KindOf(fstObject):
      return "<object>";
    case KindOf(fstList): {
      const Ref<IFuzzyStreamTokenList> list = GetList();
      return list ? list->ToString() : TString();
    }
    case KindOf(fstIFuzzySet): {
      const Ref<IFuzzySet> set = GetFuzzySetIntf();
      return set ? set->ToString() : TString();
    }
    case KindOf(fstFuzzySet): {
      const TFuzzySet* set = GetFuzzySet();
      return set ? set->GetExpression() : TString();
    }
    default:
      return TBaseStreamTokenOf::ToString();
  }
}

Ref<IInterface> TFuzzyStreamToken::GetIntfValue() const {
  return FPayload ? FPayload->Intf : nullptr;
}

Ref<IFuzzySet> TFuzzyStreamToken::GetFuzzySetIntf() const {
  return Query<IFuzzySet>(FPayload ? FPayload->Intf.Get() : nullptr);
}

Ref<IFuzzyStreamTokenList> TFuzzyStreamToken::GetList() const {
  return Query<IFuzzyStreamTokenList>(FPayload ? FPayload->Intf.Get() : nullptr);
}

TObject* TFuzzyStreamToken::GetObjValue() const { return FPayload ? FPayload->Object : nullptr; }

TFuzzySet* TFuzzyStreamToken::GetFuzzySet() const {
  return dynamic_cast<TFuzzySet*>(GetObjValue());
}

void TFuzzyStreamToken::SetIntf(const Ref<IInterface>& value, TFuzzyStreamTokenType kind) {
  Payload().Intf = value;
  SetDataType(KindOf(value ? kind : fstNone));
}

void TFuzzyStreamToken::SetIntfValue(const Ref<IInterface>& value) { SetIntf(value, fstInterface); }

void TFuzzyStreamToken::SetList(const Ref<IFuzzyStreamTokenList>& value) {
  SetIntf(value, fstList);
}

void TFuzzyStreamToken::SetFuzzySetIntf(const Ref<IFuzzySet>& value) {
  SetIntf(value, fstIFuzzySet);
}

void TFuzzyStreamToken::SetObjValue(TObject* value) {
  Payload().Object = value;
  SetDataType(KindOf(value ? fstObject : fstNone));
}

void TFuzzyStreamToken::SetFuzzySet(TFuzzySet* value) {
  Payload().Object = value;
  SetDataType(KindOf(value ? fstFuzzySet : fstNone));
}

// TFuzzyStreamTokenList

TFuzzyStreamTokenList::~TFuzzyStreamTokenList() {
  // A nested list would free its own content in turn, one stack frame a level. So lists that go
  // with this one are taken out of their tokens and freed in a loop; they are chained by a field of
  // theirs, because there may be no memory for them now.
  std::vector<Ref<IFuzzyStreamToken>> tokens = std::move(FTokens.Items());
  Ref<TFuzzyStreamTokenList> doomed;
  for (;;) {
    for (; !tokens.empty(); tokens.pop_back()) {
      Ref<TFuzzyStreamTokenList> list = TakeLastList(*tokens.back());
      if (!list) continue;
      list->FNext = std::move(doomed);
      doomed = std::move(list);
    }
    if (!doomed) return;
    tokens = std::move(doomed->FTokens.Items());
    doomed = std::move(doomed->FNext);
  }
}

/// The list of a token that nobody else holds, when nobody but the token holds it either; else
/// nothing.
Ref<TFuzzyStreamTokenList> TFuzzyStreamTokenList::TakeLastList(IFuzzyStreamToken& token) noexcept {
  const int kind = token.GetDataType();
  if (kind != KindOf(fstList) && kind != KindOf(fstInterface)) return nullptr;
  auto* last = dynamic_cast<TFuzzyStreamToken*>(&token);
  if (!last || !last->IsLastReference() || !last->FPayload) return nullptr;
  Ref<IInterface>& held = last->FPayload->Intf;
  auto* list = dynamic_cast<TFuzzyStreamTokenList*>(held.Get());
  if (!list || !list->IsLastReference()) return nullptr;
  Ref<TFuzzyStreamTokenList> taken(list);
  held = nullptr;
  return taken;
}

void TFuzzyStreamTokenList::PutBaseStreamToken(int index, const Ref<IBaseStreamToken>& value) {
  const Ref<IFuzzyStreamToken> token = Query<IFuzzyStreamToken>(value.Get());
  if (!token)
    throw EConvertError(FormatText(SAssignError, {TString("token"), TString("IFuzzyStreamToken")}));
  FTokens.Put(index, token);
}

TString TFuzzyStreamTokenList::ToString() const {
  TString text;
  std::vector<std::pair<const TFuzzyStreamTokenList*, std::size_t>> levels;
  levels.emplace_back(this, 0);
  while (!levels.empty()) {
    auto& [list, next] = levels.back();
    if (next == list->FTokens.Items().size()) {
      levels.pop_back();
      continue;
    }
    if (next > 0) text += u' ';
    const Ref<IFuzzyStreamToken>& token = list->FTokens.Items()[next++];
    const TFuzzyStreamTokenList* nested = nullptr;
    if (token->GetDataType() == KindOf(fstList))
      nested = dynamic_cast<const TFuzzyStreamTokenList*>(token->GetList().Get());
    if (nested)
      levels.emplace_back(nested, 0);
    else
      text += token->ToString();
  }
  return text;
}

bool TFuzzyStreamTokenList::Equals(const Ref<IFuzzyStreamTokenList>& list) const {
  if (!list || list->GetValueCount() != GetValueCount()) return false;
  for (int i = 0; i < GetValueCount(); ++i) {
    if (!Get(i)->Equals(*list->Get(i))) return false;
  }
  return true;
}

void TFuzzyStreamTokenList::Append(const Ref<IFuzzyStreamTokenList>& list) {
  const int count = list ? list->GetValueCount() : 0;  // the list may be this one
  for (int i = 0; i < count; ++i) Add(list->Get(i));
}

Ref<IFuzzyStreamTokenList> TFuzzyStreamTokenList::Clone() const {
  const Ref<TFuzzyStreamTokenList> copy = Create();
  copy->FTokens = FTokens;
  return copy;
}

void TFuzzyStreamTokenList::Assign(const Ref<IFuzzyStreamTokenList>& source) {
  const Ref<TFuzzyStreamTokenList> copy = Create();
  copy->Append(source);
  std::swap(FTokens, copy->FTokens);
}

}  // namespace fzy
