// What is found out about a program once it stands.
#pragma once

#include "regex/program.h"

namespace vexrt {

void find_categories(Program &program);
bool find_must_string(Program &program); // false without memory
void find_repetition_depth(Program &program);
void find_anchor(Program &program);

} // namespace vexrt
