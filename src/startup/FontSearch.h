#pragma once

/// Has the system find its fonts beside what else the start of the program takes, as nothing can be written in a window
/// before: it reads dozens of files.
namespace FontSearch {

/// Before the application object is made, which takes a while too. Once in a program.
void Start();

/// Returns once the fonts are found, at once where they are not searched for.
void Wait();

} // namespace FontSearch
