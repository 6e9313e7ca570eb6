// The steps of the ladder, each defined in the source of its group of versions. They work on the line store and leave
// what they do not find alone or add it. They report nothing, but for step "3.13", which names an unknown
// operating-system family on standard output.
//
// Kept: what a step appends it appends beside an entry of that key, wherever it does not say that it looks for one.
#pragma once

namespace tolvane {

void step312();
void step313();
void step314();
void step32();
void step321();
void step33();
void step40();
void step41();
void step42();
void step50();
void step505();
void step52();
void step53();
void step532();
void step534();
void step535();
void step536();
void step537();
void step539();
void step540();
void step541();
void step542();
void step543();
void step544();
void step545();

}  // namespace tolvane
