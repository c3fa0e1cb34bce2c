// Whole numbers of 128 bits: what an exact decimal of 28 digits and its products need. The
// compiler's own where the processor's registers carry them; on 32 bits Boost's, which count alike.
#pragma once

#ifndef __SIZEOF_INT128__
#include <boost/multiprecision/cpp_int.hpp>
#endif

namespace values {

#ifdef __SIZEOF_INT128__
__extension__ typedef __int128 Int128;
__extension__ typedef unsigned __int128 Uint128;
#else
using Int128 = boost::multiprecision::int128_t;
using Uint128 = boost::multiprecision::uint128_t;
#endif

}  // namespace values
