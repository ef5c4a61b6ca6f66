// Written by script/gen-table-parts.
// clang-format off

// Entry 16 j + k of gmPowTableH is
//
//   gmPowCoarse[j] + fused(gmPowCoarse[j], gmPowFine[k], gmPowRest[j])
//
// and that of gmLog2LUT, k = 0 .. 16, a polynomial in k with the coefficients gmLogCoefs[degree][j],
// plus as many units in the last place, -2 .. 1, as bits 2 k and 2 k + 1 of gmLogUnits[j] say; for
// k = 16 none.

#pragma once

#include <stdint.h>

namespace channelstrip {

// 2^(j/32).
alignas(64) constexpr float gmPowCoarse[32] = {
    0x1p+0f, 0x1.059b0ep+0f, 0x1.0b5586p+0f, 0x1.11301ep+0f, 0x1.172b84p+0f, 0x1.1d4874p+0f,
    0x1.2387a6p+0f, 0x1.29e9ep+0f, 0x1.306fep+0f, 0x1.371a74p+0f, 0x1.3dea64p+0f, 0x1.44e086p+0f,
    0x1.4bfdaep+0f, 0x1.5342b6p+0f, 0x1.5ab07ep+0f, 0x1.6247ecp+0f, 0x1.6a09e6p+0f, 0x1.71f75ep+0f,
    0x1.7a1148p+0f, 0x1.82589ap+0f, 0x1.8ace54p+0f, 0x1.93737cp+0f, 0x1.9c4918p+0f, 0x1.a5503cp+0f,
    0x1.ae89fap+0f, 0x1.b7f77p+0f, 0x1.c199bep+0f, 0x1.cb720ep+0f, 0x1.d5818ep+0f, 0x1.dfc974p+0f,
    0x1.ea4afap+0f, 0x1.f50766p+0f,
};

// 2^(k/512) - 1.
alignas(64) constexpr float gmPowFine[16] = {
    0x0p+0f, 0x1.6321b6p-10f, 0x1.635f4cp-9f, 0x1.0ab5b2p-8f, 0x1.63daap-8f, 0x1.bd1e78p-8f,
    0x1.0b40a2p-7f, 0x1.380188p-7f, 0x1.64d1f4p-7f, 0x1.91b1eap-7f, 0x1.bea17p-7f, 0x1.eba08cp-7f,
    0x1.0c57a2p-6f, 0x1.22e6cep-6f, 0x1.397dccp-6f, 0x1.501c9ep-6f,
};

// What gmPowCoarse lacks of 2^(j/32).
alignas(64) constexpr float gmPowRest[32] = {
    0x0p+0f, -0x1.9d4f52p-25f, 0x1.9bb122p-25f, -0x1.fdb496p-25f, -0x1.c15742p-27f, -0x1.d2e8cap-25f,
    0x1.ceac48p-25f, -0x1.5c0424p-25f, 0x1.4636e2p-25f, -0x1.18aac6p-25f, 0x1.824684p-25f, 0x1.892d04p-36f,
    -0x1.593abcp-25f, -0x1.2c561p-25f, -0x1.5bd5ecp-27f, -0x1.f8b55p-25f, 0x1.9fcef4p-26f, 0x1.1d8beep-25f,
    -0x1.829fdp-25f, -0x1.accc7cp-26f, 0x1.33506ep-27f, -0x1.e64744p-25f, 0x1.51f848p-27f, -0x1.b83b54p-25f,
    -0x1.a94b14p-26f, -0x1.a09438p-25f, -0x1.3d56b2p-27f, -0x1.8837ccp-27f, -0x1.822dbcp-27f, -0x1.908c94p-25f,
    0x1.52486cp-27f, -0x1.246ebp-26f,
};

// By degree.
alignas(64) constexpr float gmLogCoefs[5][32] = {
    {
        0x0p+0f, 0x1.6bad38p-5f, 0x1.663f7p-4f, 0x1.08c588p-3f, 0x1.5c01a4p-3f, 0x1.acf5e2p-3f,
        0x1.fbc16cp-3f, 0x1.24407ap-2f, 0x1.49a784p-2f, 0x1.6e221cp-2f, 0x1.91bba8p-2f, 0x1.b47ecp-2f,
        0x1.d6753ep-2f, 0x1.f7a856p-2f, 0x1.0c105p-1f, 0x1.1bf312p-1f, 0x1.2b8034p-1f, 0x1.3abb4p-1f,
        0x1.49a784p-1f, 0x1.584822p-1f, 0x1.66a008p-1f, 0x1.74b1fep-1f, 0x1.82809ep-1f, 0x1.900e62p-1f,
        0x1.9d5dap-1f, 0x1.aa709p-1f, 0x1.b74948p-1f, 0x1.c3e9cap-1f, 0x1.d053f6p-1f, 0x1.dc899ap-1f,
        0x1.e88c6cp-1f, 0x1.f45e08p-1f,
    },
    {
        0x1.715476p-9f, 0x1.662358p-9f, 0x1.5b9acap-9f, 0x1.51ac5p-9f, 0x1.484b1p-9f, 0x1.3f6ba6p-9f,
        0x1.3703cp-9f, 0x1.2f0a3ap-9f, 0x1.2776c6p-9f, 0x1.2041ecp-9f, 0x1.1964ecp-9f, 0x1.12d9a6p-9f,
        0x1.0c9a88p-9f, 0x1.06a276p-9f, 0x1.00ecd8p-9f, 0x1.f6ead8p-10f, 0x1.ec709ep-10f, 0x1.e263dcp-10f,
        0x1.d8be08p-10f, 0x1.cf790cp-10f, 0x1.c68f68p-10f, 0x1.bdfb9cp-10f, 0x1.b5b97p-10f, 0x1.adc3d6p-10f,
        0x1.a61762p-10f, 0x1.9eaf9ap-10f, 0x1.978956p-10f, 0x1.90a116p-10f, 0x1.89f3b2p-10f, 0x1.837e32p-10f,
        0x1.7d3e6ap-10f, 0x1.77313cp-10f,
    },
    {
        -0x1.715434p-19f, -0x1.5b48d6p-19f, -0x1.472812p-19f, -0x1.34ba9ep-19f, -0x1.23d0cep-19f, -0x1.14414ap-19f,
        -0x1.05e81ap-19f, -0x1.f14ba6p-20f, -0x1.d8bddap-20f, -0x1.c1f65ap-20f, -0x1.acca68p-20f, -0x1.99143p-20f,
        -0x1.86b218p-20f, -0x1.75863ep-20f, -0x1.6575f4p-20f, -0x1.566958p-20f, -0x1.484b02p-20f, -0x1.3b07bp-20f,
        -0x1.2e8e0ap-20f, -0x1.22ce68p-20f, -0x1.17ba9ep-20f, -0x1.0d45d4p-20f, -0x1.03645ep-20f, -0x1.f4173cp-21f,
        -0x1.e263ccp-21f, -0x1.d19cc4p-21f, -0x1.c1b1f8p-21f, -0x1.b2949ap-21f, -0x1.a43718p-21f, -0x1.968cf4p-21f,
        -0x1.898ab6p-21f, -0x1.7d25c8p-21f,
    },
    {
        0x1.ec1876p-29f, 0x1.c0b848p-29f, 0x1.9a4b9cp-29f, 0x1.7822a4p-29f, 0x1.59aa0ap-29f, 0x1.3e65b4p-29f,
        0x1.25ec9ap-29f, 0x1.0fe56ep-29f, 0x1.f807dcp-30f, 0x1.d40d78p-30f, 0x1.b36b2cp-30f, 0x1.95bfc6p-30f,
        0x1.7ab706p-30f, 0x1.6207aap-30f, 0x1.4b71cp-30f, 0x1.36bd5cp-30f, 0x1.23b962p-30f, 0x1.123a9cp-30f,
        0x1.021aeap-30f, 0x1.e67122p-31f, 0x1.caeb44p-31f, 0x1.b16f0ep-31f, 0x1.99cd1ap-31f, 0x1.83db16p-31f,
        0x1.6f7322p-31f, 0x1.5c734ap-31f, 0x1.4abd1p-31f, 0x1.3a35p-31f, 0x1.2ac254p-31f, 0x1.1c4eb4p-31f,
        0x1.0ec5e4p-31f, 0x1.02158cp-31f,
    },
    {
        -0x1.5f811cp-38f, -0x1.3741ccp-38f, -0x1.149bdep-38f, -0x1.ed4d12p-39f, -0x1.b947eep-39f, -0x1.8bf0dap-39f,
        -0x1.6446fap-39f, -0x1.417554p-39f, -0x1.22ca7cp-39f, -0x1.07b1f2p-39f, -0x1.df5db4p-40f, -0x1.b4af98p-40f,
        -0x1.8ea6e2p-40f, -0x1.6cab86p-40f, -0x1.4e3baep-40f, -0x1.32e81p-40f, -0x1.1a5102p-40f, -0x1.0423fcp-40f,
        -0x1.e0332ep-41f, -0x1.bbe7bap-41f, -0x1.9af9c4p-41f, -0x1.7d0b34p-41f, -0x1.61c9b4p-41f, -0x1.48ed14p-41f,
        -0x1.3235d6p-41f, -0x1.1d6c0cp-41f, -0x1.0a5e4ep-41f, -0x1.f1c1c4p-42f, -0x1.d199fcp-42f, -0x1.b40054p-42f,
        -0x1.98b764p-42f, -0x1.7f8868p-42f,
    },
};

// Corrections, two bits each.
alignas(64) constexpr uint32_t gmLogUnits[32] = {
    0x31f43000, 0x5140f7cf, 0x3f3303c3, 0x00000004, 0x4000cf30, 0x34000014,
    0x30fc3c30, 0x00000000, 0x00001000, 0x40c00010, 0xc4c00300, 0xff38f33b,
    0xdf403340, 0x10c0c341, 0x0c0f33f0, 0xc003cf00, 0x00440000, 0x3300fc00,
    0x51440130, 0x31004000, 0xcc0c0304, 0x000c00f0, 0x0cf33fff, 0xd0333fcc,
    0xfc0f330f, 0x7c27c1f0, 0x40015144, 0x0c0fc0c0, 0xdc40300d, 0x15544400,
    0x8cf33f3e, 0x50c17351,
};

}  // namespace channelstrip
