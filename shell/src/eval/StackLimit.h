// Not installed; internal to sgshell.
// A guard against running out of stack: the evaluator asks before each
// nested step whether the thread's stack still has room, and raises an
// error with an identifier instead of overflowing on input that nests too
// deeply for the other limits to catch (recursion inside deep expressions).
#pragma once

namespace sgsh {

// Raises VANTEL:sgsh:StackExhausted when less than a safety reserve of the
// current thread's stack is left.
void checkStackRoom();

}  // namespace sgsh
