#include "ladder/check_zpg.h"

#include <map>

#include "document/entries.h"
#include "document/fields.h"
#include "document/series.h"

namespace tolvane {

namespace {

constexpr std::string_view zpgsection = "[ZPG.Applications]";
constexpr std::string_view zpgprefix = "ZPGApp_";

/// The standard applications.
constexpr std::string_view zpg[] = {
    "/zpg/samples,samples,1,1,,900,1,,SAMPLES,1,,/zpg/samples/error.zpg,,/zpg/samples/,0,0,,,1",
    "/zpg/user,user,1,1,,900,1,,USER,1,,,,/zpg/user/,0,0,,,1",
    "/zpg/docbook,docbook,1,0,,900,1,,DOCBOOK,1,,,,/zpg/docbook/,0,0,,%Application/ZPG/zpg/docbook,1",
    "/zpg/broker,broker,1,0,,900,1,,%SYS,1,,,,/zpg/broker/,1,0,,%Application/ZPG/zpg/broker,1",
    "/zpg/sys,sys,1,0,,28800,1,,%SYS,1,,,%zpgapp,/zpg/sys/,1,0,,%Application/ZPG/zpg/sys,1",
    "/qel/studio/templates,../dev/studio/templates,1,0,,900,1,%ZPG.StudioTemplateSuper,%SYS,0,,,%template,/studio/templates/,1,0,,,1",
    "/qel/studio/usertemplates,../devuser/studio/templates,1,1,,900,1,%ZPG.StudioTemplateSuper,%SYS,0,,,%usertemplate,/studio/usertemplates/,1,0,,,1",
    "/qel/studio/rules,../dev/zpg/rules,1,0,,900,1,,%SYS,1,,,,/dev/zpg/rules/,1,0,,,1",
};

/// The URL paths of the obsolete applications.
constexpr std::string_view zpgdel[] = {
    "/apps/scrivel", "/studio/templates", "/studio/usertemplates", "/dev/zpg/rules", "/zpg/druvelib",
};

bool addstandard(bool refresh) {
  bool changed = false;
  std::vector<Line*> applications = series(find(zpgsection), zpgprefix);
  for (const std::string_view standard : zpg) {
    const Place place = locate(applications, firstfield(standard, ','));
    if (place.line == nullptr) {
      savenumbered(zpgsection, zpgprefix, place.number, standard);
      applications =
          series(find(zpgsection), zpgprefix);  // perhaps with what stood behind the gap that this one filled
    } else if (refresh && valueof(*place.line) != standard) {
      rewrite(*place.line, keyof(*place.line), standard);
    } else {
      continue;
    }
    changed = true;
  }
  return changed;
}

/// Whether field 14 is "0" or "1", field 16 empty or field 19 not "1".
bool needsrepair(std::string_view value) {
  Text fields;
  takefields(value, 14, 19, ',', fields);
  const std::string_view field14 = firstfield(fields, ',');
  return field14 == "0" || field14 == "1" || getfield(fields, 3, ',').empty() || getfield(fields, 6, ',') != "1";
}

/// Repairs one application. Each repair writes the line, and sees what the one before has written.
bool repair(Line& line) {
  if (!needsrepair(valueof(line))) return false;
  bool changed = false;
  if (const Text field14 = getfield(valueof(line), 14, ','); field14 == "0" || field14 == "1") {
    Text value{valueof(line)};
    setfield(value, 14, ',', "");
    setfield(value, 15, ',', "0");
    rewrite(line, keyof(line), value);
    changed = true;
  }
  if (getfield(valueof(line), 16, ',').empty()) {
    rewrite(line, keyof(line), replacefield(valueof(line), 16, ',', "1"));
    changed = true;
  }
  if (getfield(valueof(line), 19, ',') != "1") {
    rewrite(line, keyof(line), replacefield(valueof(line), 19, ',', "0"));
    changed = true;  // kept: also when it was "0" already
  }
  return changed;
}

bool repairall() {
  bool changed = false;
  for (Line* const line : series(find(zpgsection), zpgprefix)) changed |= repair(*line);
  return changed;
}

/// The applications up to the gap by their numbers; those of one number in the order of the store.
using Applications = std::multimap<int, Line*>;

Applications numberedapplications() {
  const int count = countseries(zpgsection, zpgprefix);
  Applications applications;
  for (Line* line = below(find(zpgsection)); line != nullptr; line = nextinsection(line)) {
    const int number = numberof(*line, zpgprefix);
    if (number != 0 && number <= count) applications.emplace(number, line);
  }
  return applications;
}

/// Deletes the first application that has this path. Of duplicates only the first is looked at.
bool deletefirst(Applications& applications, std::string_view path) {
  for (auto place = applications.begin(); place != applications.end(); place = applications.upper_bound(place->first)) {
    if (firstfield(valueof(*place->second), ',') != path) continue;
    discard(place->second);
    applications.erase(place);
    return true;
  }
  return false;
}

/// Closes the gaps that the deleted ones have left; applications that get another number move to the end of the
/// section, or into the line of that number where a duplicate has left one.
void renumber(Applications& applications) {
  Line* end = nullptr;
  int newnumber = 1;
  for (auto place = applications.begin(); place != applications.end(); ++newnumber) {
    const auto [number, line] = *place;
    if (newnumber != number) {
      const auto duplicate = applications.lower_bound(newnumber);
      if (duplicate->first == newnumber) {
        rewrite(*duplicate->second, Text(zpgprefix, newnumber), valueof(*line));
      } else {
        appendentry(end, zpgsection, Text(zpgprefix, newnumber), valueof(*line));
      }
      discard(line);
      applications.erase(place);
    }
    place = applications.upper_bound(number);
  }
}

}  // namespace

bool check_zpg(bool refresh) {
  bool changed = addstandard(refresh);
  changed |= repairall();
  if (!refresh) return changed;
  Applications applications = numberedapplications();
  for (const std::string_view path : zpgdel) changed |= deletefirst(applications, path);
  renumber(applications);
  return changed;
}

}  // namespace tolvane
