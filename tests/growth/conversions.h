// What converts the files of a family: a command, a ladder, or operations of the store.
#pragma once

#include <string>

namespace tolvane::test {

// Each parses the file, converts it and composes its contents.

void climbladder(const std::string& file);
void climbnetwork(const std::string& file);
void climbsystem(const std::string& file);

/// Converts the lines as those of the system file and of the network file of a pair, and joins both.
void mergepair(const std::string& file);

/// The standard databases, drives and applications in the modes that replace what is there.
void resetstandards(const std::string& file);

/// Inserts a header before the last ones, takes all lines out of the store and puts them back before one of those.
void setaside(const std::string& file);

// The commands, on a file in the directory for temporary files.

void runupdate(const std::string& file);
void runfdbms(const std::string& file);

/// Sets parameters of a section that stands last, of one that is missing, and one whose key begins with "[".
void runsetparameter(const std::string& file);

}  // namespace tolvane::test
