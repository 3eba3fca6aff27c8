// The machine that the figures are of.
#pragma once

namespace tpv::bench {

// A table in Markdown: processor, memory, system, compiler, engine, and how long
// the disk of the current folder takes to keep a small write.
void PrintMachine();

}  // namespace tpv::bench
