#pragma once

/// Tells the processor that the upper halves of its vector registers are in use no more. Qt's hash of texts leaves them
/// in use, and on some processors each change between old and new vector instructions, as between this program's and
/// the C library's, then takes 100 ns. To be called before all contacts are gone through.
void ReleaseVectorState();
