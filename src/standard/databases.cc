#include "standard/databases.h"

#include <span>
#include <string_view>

#include "document/entries.h"
#include "document/fields.h"
#include "document/series.h"

namespace tolvane {

namespace {

/// A field of a database entry and what it has to be.
struct Field {
  int number;
  std::string_view text;
};

/// Rewrites an entry unless it has that value already. True when it was rewritten.
bool conform(Line& line, std::string_view value) {
  if (valueof(line) == value) return false;
  rewrite(line, keyof(line), value);
  return true;
}

/// Declares a database, or sets the fields of the one that is there.
bool declaredatabase(std::string_view standard, std::span<const Field> fields, bool reset) {
  const Place place = locate("[Datasets]", "DataSet_", firstfield(standard, ','));
  if (place.line == nullptr) {
    savenumbered("[Datasets]", "DataSet_", place.number, standard);
    return true;
  }
  if (reset) return conform(*place.line, standard);
  Text value{valueof(*place.line)};
  for (const Field& field : fields) setfield(value, field.number, ',', field.text);
  return conform(*place.line, value);
}

/// Declares a namespace, but only for a database that is declared.
bool declarenamespace(std::string_view database, std::string_view standard, bool reset) {
  const Place dataset = locate("[Datasets]", "DataSet_", firstfield(database, ','));
  if (dataset.line == nullptr) return false;
  const bool changed = reset && conform(*dataset.line, database);
  const Place place = locate("[Namespaces]", "Nsp_", firstfield(standard, ','));
  if (place.line == nullptr) {
    savenumbered("[Namespaces]", "Nsp_", place.number, standard);
    return true;
  }
  return (reset && conform(*place.line, standard)) || changed;
}

}  // namespace

bool check_audit(bool reset) {
  constexpr Field fields[] = {
      {7, "1"},
      {6, "0"}
  };
  return declaredatabase("VELMAUDIT,velmaudit,,0,P,0,1", fields, reset);
}

bool check_velmlib(bool reset) {
  constexpr Field fields[] = {
      {3, "" },
      {7, "1"},
      {5, "P"}
  };
  return declaredatabase("VELMLIB,velmlib,,0,P,0,1", fields, reset);
}

bool check_docbook(bool reset) {
  return declarenamespace("DOCBOOK,docbook,,0,P,0,0", "DOCBOOK,DOCBOOK,VELMSYS,DOCBOOK,VELMSYS,VELMLIB,VELMTEMP",
                          reset);
}

bool check_samples(bool reset) {
  return declarenamespace("SAMPLES,samples,,0,P,0,0", "SAMPLES,SAMPLES,VELMSYS,SAMPLES,VELMSYS,VELMLIB,VELMTEMP",
                          reset);
}

}  // namespace tolvane
