#include <array>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

#include <gtest/gtest.h>

#include "fuzzylogic/framework/Exception.h"
#include "fuzzylogic/language/FuzzyStreamToken.h"
#include "tests/memory/Memory.h"
#include "tests/memory/Scenario.h"

// Each operation is run again and again, while the first, the second, the third ... allocation that
// it makes fails: once that one alone, once with all that follow. An environment variable
// FUZZYLOGIC_TRACE has each of these rounds written to the error output.

namespace fzy::test {
namespace {

const TScenarios& Scenarios() {
  static const TScenarios all = [] {
    TScenarios scenarios;
    for (const auto add : {AddFrameworkScenarios, AddTableScenarios, AddSetScenarios,
                           AddModelScenarios, AddLanguageScenarios, AddFormScenarios})
      add(scenarios);
    return scenarios;
  }();
  return all;
}

struct TRound {
  const TScenario* Scenario;
  long Number;
  bool AndAllAfter;
};
TRound Current;

void WriteRound() {
  std::fprintf(stderr, "%s: allocation %ld%s\n", Current.Scenario->Name.c_str(), Current.Number,
               Current.AndAllAfter ? " and all after" : "");
}

/// A thread keeps the memory of a few tokens for the next ones. It is held back here, so that new
/// tokens do allocate, and as much of it is kept afterwards as before.
class TTokensHeld {
 public:
  TTokensHeld() {
    for (Ref<TFuzzyStreamToken>& token : FTokens) token = TFuzzyStreamToken::Create();
  }

 private:
  std::array<Ref<TFuzzyStreamToken>, 128> FTokens;
};

struct TWhole {
  std::string Before;
  std::string After;
};

TWhole WithoutFailure(const TScenario& scenario) {
  const TTokensHeld held;
  const auto trial = scenario.SetUp();
  TWhole whole{trial->Show(), {}};
  trial->Operate();
  whole.After = trial->Show();
  return whole;
}

/// What went wrong in a round, and whether an allocation has failed in it.
struct TReport {
  std::string Fault;
  bool HasFailed = true;
};

TReport Try(const TRound& round, const TWhole& whole) {
  const TTokensHeld held;
  const auto trial = round.Scenario->SetUp();
  if (trial->Show() != whole.Before) return {"another state before: " + trial->Show()};
  bool hasRefused = false;
  std::string other;
  TMemory::Fail(round.Number, round.AndAllAfter);
  try {
    trial->Operate();
  } catch (const std::bad_alloc&) {
    hasRefused = true;
  } catch (const std::exception& error) {
    TMemory::Restore();
    other = std::string("wrong exception: ") + error.what();
  }
  const bool hasFailed = TMemory::Restore();
  if (!other.empty()) return {other, hasFailed};
  const TPromise promise = round.Scenario->Promise;
  if (hasRefused) {
    try {
      if (const std::string now = trial->Show();
          promise == TPromise::Nothing && now != whole.Before)
        return {"changed:\n" + now + "\ninstead of\n" + whole.Before};
    } catch (const EException& error) {  // a text shows nothing of what was read halfway
      if (promise == TPromise::Nothing) return {std::string("changed: ") + error.what()};
    }
    try {
      trial->Operate();
    } catch (const std::exception& error) {
      return {std::string("retry raised ") + error.what()};
    }
  }
  const std::string after = trial->Show();
  if ((promise != TPromise::Usable || !hasRefused) && after != whole.After)
    return {std::string(hasRefused ? "wrong retry" : "wrong result") + ":\n" + after +
            "\ninstead of\n" + whole.After};
  if (round.AndAllAfter) TMemory::Fail(1, true);  // the end needs no memory
  return {{}, hasFailed};
}

class MemoryTest : public testing::TestWithParam<TScenario> {
 protected:
  static void SetUpTestSuite() {
    std::set_terminate([] {
      TMemory::Restore();
      WriteRound();
      std::abort();
    });
  }
};

TEST_P(MemoryTest, FailsCleanly) {
  constexpr long enough = 20'000;
  const bool isTraced = std::getenv("FUZZYLOGIC_TRACE") != nullptr;
  const TScenario& scenario = GetParam();
  const TWhole whole = WithoutFailure(scenario);
  int faults = 0;
  for (const bool andAllAfter : {false, true}) {
    bool hasFailed = true;
    for (long number = 1; hasFailed && number < enough && faults < 5; ++number) {
      Current = {&scenario, number, andAllAfter};
      if (isTraced) WriteRound();
      const long before = TMemory::Blocks();
      const TReport report = Try(Current, whole);
      TMemory::Restore();
      const long leaked = report.Fault.empty() ? TMemory::Blocks() - before : 0;
      hasFailed = report.HasFailed;
      if (report.Fault.empty() && leaked == 0) continue;
      ++faults;
      ADD_FAILURE() << "allocation " << number << (andAllAfter ? " and all after: " : ": ")
                    << (leaked == 0 ? report.Fault : "leaked " + std::to_string(leaked));
    }
    EXPECT_TRUE(!hasFailed || faults > 0) << "it never succeeds";
  }
}

INSTANTIATE_TEST_SUITE_P(All, MemoryTest, testing::ValuesIn(Scenarios()),
                         [](const auto& test) { return test.param.Name; });

}  // namespace
}  // namespace fzy::test
