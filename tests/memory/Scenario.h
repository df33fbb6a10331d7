#pragma once

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

// Operations that are tried while memory fails. A fixture is what an operation works on: its
// constructor sets it up, `Show()` tells all that can be seen of it, its destructor takes it down.

namespace fzy::test {

/// What holds when an operation did not get the memory that it needs. In every case nothing leaks,
/// the end of the fixture needs no memory, and the operation can be repeated.
enum class TPromise {
  Nothing,  ///< nothing has changed, and a repetition gives what it would have given
  Rebuilt,  ///< what was there may be lost, and a repetition gives what it would have given
  Usable,   ///< a part may have been done already: what was stated to stay, or was told of
};

class TTrial {
 public:
  virtual ~TTrial() = default;
  virtual void Operate() = 0;
  virtual std::string Show() = 0;
};

struct TScenario {
  std::string Name;  ///< letters, digits and underscores
  TPromise Promise;
  std::function<std::unique_ptr<TTrial>()> SetUp;
};
using TScenarios = std::vector<TScenario>;

template <class Fixture>
struct TCase {
  using TStep = std::function<void(Fixture&)>;

  TCase(std::string name, TStep operate, TPromise promise = TPromise::Nothing,
        TStep prepare = nullptr)
      : Name(std::move(name)),
        Operate(std::move(operate)),
        Promise(promise),
        Prepare(std::move(prepare)) {}

  std::string Name;
  TStep Operate;
  TPromise Promise;
  TStep Prepare;  ///< the rest of the set-up, or nothing
};

template <class Fixture>
class TTrialOf final : public TTrial {
 public:
  explicit TTrialOf(const TCase<Fixture>& what) : FCase(what) {
    if (FCase.Prepare) FCase.Prepare(FFixture);
  }
  void Operate() override { FCase.Operate(FFixture); }
  std::string Show() override { return FFixture.Show(); }

 private:
  const TCase<Fixture>& FCase;
  Fixture FFixture;
};

template <class Fixture>
void AddCases(TScenarios& all, const std::string& group, std::vector<TCase<Fixture>> cases) {
  for (TCase<Fixture>& one : cases) {
    const auto shared = std::make_shared<const TCase<Fixture>>(std::move(one));
    all.push_back({group + '_' + shared->Name, shared->Promise,
                   [shared] { return std::make_unique<TTrialOf<Fixture>>(*shared); }});
  }
}

void AddFrameworkScenarios(TScenarios& all);
void AddTableScenarios(TScenarios& all);
void AddSetScenarios(TScenarios& all);
void AddModelScenarios(TScenarios& all);
void AddLanguageScenarios(TScenarios& all);
void AddFormScenarios(TScenarios& all);

}  // namespace fzy::test
