#include "fuzzylogic/interfaces/KelStringHashTable.h"

namespace fzy {

TString UniqueName(const TString& name, const TString& append,
                   const std::function<bool(const TString&)>& taken) {
  TString result = name;
  for (int n = 0; taken(result);) {
    const std::size_t at = append.empty() ? TString::npos : result.Find(append);
    if (at == TString::npos) {
      result = result + " " + append;
    } else {
      ++n;
      result = result.Slice(0, at) + " " + append + " (" + TString(std::to_string(n)) + ")";
    }
  }
  return result;
}

}  // namespace fzy
