// Row counts of the generated device tables, written by tools/gen_gpu_tables.py
// together with gpu_table_*.inc. Do not edit.
#pragma once

#include <cstddef>

namespace Kalidornm {

inline constexpr std::size_t nvidiaClassicRowCount = 531;
inline constexpr std::size_t nvidiaLaterRowCount = 513;
inline constexpr std::size_t amdClassicRowCount = 282;
inline constexpr std::size_t amdLaterRowCount = 148;
inline constexpr std::size_t intelClassicRowCount = 71;
inline constexpr std::size_t intelLaterRowCount = 229;
inline constexpr std::size_t s3ClassicRowCount = 4;
inline constexpr std::size_t s3LaterRowCount = 0;

}  // namespace Kalidornm
