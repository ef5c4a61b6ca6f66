#include "record_layout.h"

// Records are plain data in C++ too.
template <typename... Records>
constexpr bool are_plain = (... &&
                            (std::is_standard_layout_v<Records> && std::is_trivial_v<Records>));
static_assert(are_plain<SChannelStrip_Alg_Context, EQ_SCoefs, EQ_SDezipCoefs, EQ_SState,
                        Dyn_SCoefsBlock, Dyn_SState>);

static_assert(
    std::is_same_v<AlgEntry_16_Stem, void(const SChannelStrip_Alg_Context* const*, const void*)>);
