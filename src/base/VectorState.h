#pragma once
#if defined(__x86_64__)
__attribute__((target("avx"), noinline)) inline void ReleaseVectorState() { __builtin_ia32_vzeroupper(); }
#else
inline void ReleaseVectorState() {}
#endif
