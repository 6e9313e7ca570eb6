// The field and entry operations on any text, compared with what they mean said in another way: fields as a list of
// strings, a section as a list of keys and values.
#include "document/fields.h"

#include <algorithm>
#include <optional>

#include "document/entries.h"
#include "document/numbers.h"
#include "fuzz/properties.h"
#include "fuzz/reader.h"

namespace tolvane::fuzz {

namespace {

using Strings = std::vector<std::string>;

Strings split(const std::string& value, char separator) {
  Strings fields{""};
  for (const char character : value) {
    if (character == separator) {
      fields.emplace_back();
    } else {
      fields.back() += character;
    }
  }
  return fields;
}

std::string join(const Strings& fields, std::size_t from, std::size_t to, char separator) {
  std::string joined;
  for (std::size_t n = from; n <= std::min(to, fields.size()); ++n) {
    if (n > from) joined += separator;
    joined += fields[n - 1];
  }
  return joined;
}

/// The result of what may end with a text that is too long: none when it does.
template <typename Work>
std::optional<std::string> result(const Work& work) {
  try {
    return std::string(work().view());
  } catch (const TextTooLong&) {
    return {};
  }
}

std::optional<std::string> fitting(const std::string& text) {
  return text.size() <= Text::maximum ? std::optional(text) : std::nullopt;
}

void claimtaking(const std::string& value, unsigned from, unsigned to, char separator) {
  const Strings fields = split(value, separator);
  const std::size_t first = std::max(from, 1U);
  const std::size_t last = std::max<std::size_t>(to, first);
  Text output;
  const char more = takefields(value, static_cast<int>(from), static_cast<int>(to), separator, output);
  claim(output == join(fields, first, last, separator), "takefields takes the fields");
  claim(more == (last < fields.size() ? separator : '\0'), "takefields tells whether more follow");
  claim(getfield(value, static_cast<int>(from), separator) == join(fields, first, first, separator), "getfield");
  claim(firstfield(value, separator) == fields[0], "firstfield");
  claim(numfields(value, separator) == static_cast<int>(fields.size()), "numfields counts the fields");
}

void claimreplacing(const std::string& value, unsigned number, char separator, const std::string& text) {
  Strings fields = split(value, separator);
  const std::size_t n = std::max(number, 1U);
  fields.resize(std::max(fields.size(), n));
  fields[n - 1] = text;
  const auto expected = fitting(join(fields, 1, fields.size(), separator));
  claim(result([&] { return replacefield(value, static_cast<int>(number), separator, text); }) == expected,
        "replacefield");
  claim(result([&] {
          Text changed{value};
          setfield(changed, static_cast<int>(number), separator, text);
          return changed;
        }) == expected,
        "setfield");
}

void claimsearching(const std::string& value, const std::string& needle, const std::string& text) {
  const std::size_t position = value.find(needle);
  claim(within(needle, value) == static_cast<int>(position + 1), "within");
  std::string expected = value;
  if (position != std::string::npos) expected.replace(position, needle.size(), text);
  claim(result([&] {
          Text output;
          swapchars(value, needle, text, output);
          return output;
        }) == fitting(expected),
        "swapchars");
}

void claimcharacters(const std::string& value, char from, char to) {
  std::string expected = value;
  std::replace(expected.begin(), expected.end(), from, to);
  Text output;
  changechar(value, from, to, output);
  claim(output == expected, "changechar");
  alphaupper(value, output);
  claim(output.length() == value.size(), "alphaupper changes no length");
  claim(std::none_of(output.view().begin(), output.view().end(), [](char c) { return c >= 'a' && c <= 'z'; }), "upper");
}

/// A section as a list of keys and values.
struct Entry {
  std::string key;
  std::string value;
};
using Entries = std::vector<Entry>;

const std::string section = "[A]";

Lines linesof(const Entries& entries) {
  Lines lines{section};
  for (const Entry& entry : entries) lines.push_back(entry.key + "=" + entry.value);
  lines.emplace_back("[B]");
  return lines;
}

auto entryof(Entries& entries, const std::string& key) {
  return std::find_if(entries.begin(), entries.end(), [&](const Entry& entry) { return entry.key == key; });
}

void set(Entry& entry, const std::string& key, const std::string& value) {
  if (key.size() + 1 + value.size() > Text::maximum) throw TextTooLong{};
  entry = {key, value};
}

void add(Entries& entries, const std::string& key, const std::string& value) {
  entries.emplace_back();
  set(entries.back(), key, value);
}

void change(Entries& entries, int field, const std::string& text) {
  for (std::size_t n = 0; n < entries.size(); ++n) {
    Entry& first = *entryof(entries, entries[n].key);
    set(first, first.key, std::string(replacefield(first.value, field, ',', text).view()));
  }
}

void replace(Entries& entries, const std::string& oldtext, const std::string& newtext) {
  if (newtext.find(oldtext) != std::string::npos) return;
  for (Entry& entry : entries) {
    std::string value = entryof(entries, entry.key)->value;
    for (std::size_t at = value.find(oldtext); at != std::string::npos; at = value.find(oldtext)) {
      value.replace(at, oldtext.size(), newtext);
      set(entry, entry.key, value);
    }
  }
}

/// An operation with its two texts and a number, on the store and on the list.
struct Operation {
  void (*store)(const std::string& key, const std::string& value, int n);
  void (*list)(Entries& entries, const std::string& key, const std::string& value, int n);
};

const Operation operations[] = {
    {[](auto& key,     auto& value,     int) { saveentry(section, key, value); },
     [](auto& entries, auto& key,     auto& value,     int) { add(entries, key, value); }    },
    {[](auto& key,     auto& value,     int) { putentry(section, key, value); },
     [](auto& entries, auto& key,     auto& value,     int) {
       const auto entry = entryof(entries, key);
       entry == entries.end() ? add(entries, key, value) : set(*entry, key, value);
     }                                     },
    {[](auto& key,     auto& value,     int) { editentry(section, key, value); },
     [](auto& entries, auto& key,     auto& value,     int) {
       if (const auto entry = entryof(entries, key); entry != entries.end()) set(*entry, key, value);
     }                                     },
    {[](auto& key,     auto& value,     int) { keepentry(section, key, value); },
     [](auto& entries, auto& key,     auto& value,     int) {
       if (entryof(entries, key) == entries.end()) add(entries, key, value);
     }                                     },
    {[](auto& key,     auto& /*value*/, int) { delentry(section, key); },
     [](auto& entries, auto& key,     auto& /*value*/, int) {
       if (const auto entry = entryof(entries, key); entry != entries.end()) entries.erase(entry);
     }                                 },
    {[](auto& key,     auto& value,     int) { renametag(section, key, value); },
     [](auto& entries, auto& key,     auto& value,     int) {
       if (const auto entry = entryof(entries, key); entry != entries.end()) set(*entry, value, entry->value);
     }                                     },
    {[](auto& /*key*/, auto& value,     int n) { changeinsection(section, n, ',', value); },
     [](auto& entries, auto& /*key*/, auto& value,     int n) { change(entries, n, value); } },
    {[](auto& key,     auto& value,     int) { replaceinsection(section, key, value); },
     [](auto& entries, auto& key,     auto& value,     int) { replace(entries, key, value); }},
};

/// A text that can be a key: another one is a header, or has its end before its own.
std::string askey(std::string text) {
  text.resize(std::min(text.find('='), text.size()));
  return text.substr(std::min(text.find_first_not_of('['), text.size()));
}

/// Whether the work ends with a text that is too long.
template <typename Work>
bool outgrows(const Work& work) {
  try {
    work();
    return false;
  } catch (const TextTooLong&) {
    return true;
  }
}

/// Does operations to the store and to the list until one has a text that is too long.
void claimoperations(Reader reader) {
  newsection(section);
  newsection("[B]");
  Entries entries;
  while (!reader.empty()) {
    const Operation& operation = operations[reader.number() % std::size(operations)];
    const int n = static_cast<int>(reader.number() % 8);
    const std::string key = askey(reader.text());
    const std::string value = operation.store == operations[5].store ? askey(reader.text()) : reader.text();
    const bool storeoutgrown = outgrows([&] { operation.store(key, value, n); });
    const bool listoutgrown = outgrows([&] { operation.list(entries, key, value, n); });
    claim(storeoutgrown == listoutgrown, "what is too long, and only that, ends an operation");
    if (storeoutgrown) return;
    claim(storedlines() == linesof(entries), "the section is what the operations make it");
  }
}

}  // namespace

void fields(std::string_view input) {
  Reader reader(input);
  const char separator = reader.character();
  const char other = reader.character();
  const unsigned from = reader.number();
  const unsigned to = reader.number();
  const std::string value = reader.text();
  const std::string needle = reader.text();
  const std::string text = reader.text();
  claimreplacing(value, from, separator, text);
  claimtaking(value, from, to, separator);
  claimsearching(value, needle, text);
  claimcharacters(value, separator, other);
  // Each operation may look at what all before it have added.
  ends([&] { claimoperations(reader); }, 100000 + std::uint64_t{50} * input.size() * input.size());
}

}  // namespace tolvane::fuzz
