// Fields: values that are lists of fields joined by a one-character separator, and the characters of a value.
//
// Fields are numbered from 1, and a number below 1 means 1. A value has one field more than it has separators, so the
// empty value has one empty field. Results that would be longer than 511 characters throw TextTooLong. An output may
// be the text that the value is part of.
#pragma once

#include <string_view>

#include "document/text.h"

namespace tolvane {

/// Copies field n. Returns the separator when more fields follow, NUL when field n was the last; the output is empty
/// and NUL returned when the value has fewer fields.
char getfield(std::string_view value, int n, char separator, Text& output);

/// Field n, empty when the value has fewer fields.
Text getfield(std::string_view value, int n, char separator);

/// Field 1, in place.
std::string_view firstfield(std::string_view value, char separator);

/// Copies the fields from the one number to the other with the separators between them, as far as the value has them;
/// a `to` below `from` counts as `from`. Returns as `getfield` does.
char takefields(std::string_view value, int from, int to, char separator, Text& output);

/// One more than the number of separators.
int numfields(std::string_view value, char separator);

/// Replaces field n of the value in place; a value with fewer fields is padded with separators.
void setfield(Text& value, int n, char separator, std::string_view text);

/// Writes the value with field n replaced; a value with fewer fields is padded with separators.
void replacefield(std::string_view value, int n, char separator, std::string_view text, Text& output);

/// The same, as the result.
Text replacefield(std::string_view value, int n, char separator, std::string_view text);

/// Copies the source with every occurrence of one character as another.
void changechar(std::string_view source, char from, char to, Text& output);

/// The position, counted from 1, of the first occurrence of the needle; 0 when there is none, 1 for an empty needle.
int within(std::string_view needle, std::string_view haystack);

/// Copies the source with the letters a to z in upper case.
void alphaupper(std::string_view source, Text& output);

}  // namespace tolvane
