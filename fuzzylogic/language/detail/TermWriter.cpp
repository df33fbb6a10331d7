#include "fuzzylogic/language/detail/TermWriter.h"

#include "fuzzylogic/language/detail/DefinitionText.h"
#include "fuzzylogic/vocabulary/FuzzyKeywords.h"
#include "fuzzylogic/vocabulary/FuzzyMessages.h"

namespace fzy::detail {
namespace {

// A list of points comes to rest quickly, because each round takes points away or changes nothing.
constexpr int MostRounds = 16;

/// A reader marks a term by its own name as its expression; that is no body.
TString ExpressionOf(const TSetContent& set) {
  return set.Expression != set.Name ? set.Expression : TString();
}

/// A list without points is no body either, but nothing at all is.
TString Points(const TSetContent& set, TNumberStyle number) {
  return set.Points.empty() && !IsEmptyFuzzyName(set.Name) ? TString()
                                                           : PointList(set.Points, number);
}

/// Whether both are written alike.
bool SameContent(const TSetContent& a, const TSetContent& b) {
  return a.Type == b.Type && a.Definition == b.Definition &&
         a.InflectionPoint == b.InflectionPoint && a.Points == b.Points;
}

}  // namespace

bool IsTermName(const TString& name) {
  return !IsEmptyFuzzyName(name) && !IsReservedFuzzyWord(name) && WordText(name);
}

bool HasExpression(const TSetContent& set) {
  return !set.Definition.empty() || !ExpressionOf(set).empty();
}

TString TermHead(const TSetContent& set) {
  TString head;
  if (!IsEmptyFuzzyName(set.Name)) {
    if (!IsTermName(set.Name)) throw EFzyException(SFzyNameNotWritable, {set.Name});
    head += u"(term ";
    head += *WordText(set.Name);
    head += u' ';
  }
  if (!set.Comment.empty()) {
    head += StringText(set.Comment);
    head += u' ';
  }
  return head;
}

TString SetText(const TSetContent& set, TNumberStyle number) {
  const std::vector<TString> calls = ShapeCalls(set, number);
  const TString expression = ExpressionOf(set);
  TString text = TermHead(set);
  text += !calls.empty() ? calls.front() : !expression.empty() ? expression : Points(set, number);
  if (!IsEmptyFuzzyName(set.Name)) text += u')';
  return text;
}

TString TTermWriter::Write(const TSetContent& set) {
  if (!IsTermName(set.Name)) throw EFzyException(SFzyNameNotWritable, {set.Name});
  const TString head = TermHead(set);
  TAttempt settled;
  // Each round may move the points a little; as a mere list they stay.
  if (!Settle(head, set, settled) ||
      !SamePoints(settled.ReadBack.Points, set.Points, FNumber.Tolerance())) {
    FShadow->Forget();
    Settle(head, {set.Name, set.Comment, {}, {}, fstUserDefined, 0, set.Points}, settled);
  }
  FShadow->Keep();
  return head + settled.Body + u")";
}

bool TTermWriter::Settle(const TString& head, const TSetContent& set, TAttempt& attempt) {
  attempt = {{}, set};
  for (int round = 0;; ++round) {
    TAttempt next = Best(head, attempt.ReadBack);
    const bool settled =
        SameContent(next.ReadBack, attempt.ReadBack) || (round > 0 && next.Body == attempt.Body);
    attempt = std::move(next);
    if (settled || round == MostRounds) return settled;
    FShadow->Forget();
  }
}

TTermWriter::TAttempt TTermWriter::Best(const TString& head, const TSetContent& set) {
  TAttempt result;
  for (const TString& call : ShapeCalls(set, FNumber)) {
    if (TryBody(head, call, set, result)) return result;
  }
  for (const TString& expression : {set.Definition, ExpressionOf(set)}) {
    if (TryExpression(head, expression, set, result)) return result;
  }
  TSetContent thinned = set;
  thinned.Points = WithoutCrowds(set.Points, FNumber);
  const TString points = Points(thinned, FNumber);
  if (TryBody(head, points, thinned, result)) return result;
  const TString raised = RaisedPointList(thinned.Points, FNumber);
  if (TryExpression(head, raised, thinned, result)) return result;
  return Read(head, points);
}

bool TTermWriter::TryBody(const TString& head, const TString& body, const TSetContent& set,
                          TAttempt& result) {
  try {
    result = Read(head, body);
    if (SamePoints(result.ReadBack.Points, set.Points, FNumber.Tolerance())) return true;
  } catch (const EKelException&) {  // NOLINT(bugprone-empty-catch): so it is not the body
  }
  FShadow->Forget();
  return false;
}

bool TTermWriter::TryExpression(const TString& head, const TString& text, const TSetContent& set,
                                TAttempt& result) {
  // A string right behind the name is the comment.
  const bool quoted = text.Find(u"\"") == 0 && set.Comment.empty();
  const TString guard = quoted ? u"\"\" " : u"";
  if (text.empty() || !TryBody(head, guard + text, set, result)) return false;
  const TString& definition = result.ReadBack.Definition;
  result.Body = guard + definition;  // the same tokens, evenly spaced
  if (definition.empty()) FShadow->Forget();
  return !definition.empty();
}

TTermWriter::TAttempt TTermWriter::Read(const TString& head, const TString& body) {
  return {body, FShadow->Read(head + body + u")")};
}

}  // namespace fzy::detail
