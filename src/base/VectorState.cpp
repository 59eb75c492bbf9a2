#include "VectorState.h"

#if defined(__x86_64__)

#include <immintrin.h>

namespace {

__attribute__((target("avx"))) void ClearUpperHalves()
{
    _mm256_zeroupper();
}

} // namespace

void ReleaseVectorState()
{
    static const bool s_hasUpperHalves = __builtin_cpu_supports("avx") != 0;
    if (s_hasUpperHalves)
        ClearUpperHalves();
}

#else

void ReleaseVectorState() {}

#endif
