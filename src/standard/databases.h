// The standard databases: fix-ups that declare them, and for two of them their namespaces, in their current form.
//
// With `reset` a differing entry is replaced by the whole standard text; without it only the fields that matter are
// made to conform. Each returns true when it changed the line store. An entry is looked for up to the first gap in the
// numbering, and a new one takes the number of that gap. No step uses `reset`.
#pragma once

namespace tolvane {

/// Declares the audit database, or sets its fields 6 and 7.
bool check_audit(bool reset);

/// Declares the library database, or sets its fields 3, 5 and 7.
bool check_velmlib(bool reset);

/// Declares the namespace of the documentation database where that database is declared.
bool check_docbook(bool reset);

/// Declares the namespace of the samples database where that database is declared.
bool check_samples(bool reset);

}  // namespace tolvane
