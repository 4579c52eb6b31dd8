#pragma once

#include <string>

namespace media {

// A daylight sky with a sun far brighter than 1, as an RGBE vertical cross of tiles `tileSize` wide.
bool writeSkyCross(const std::string& path, int tileSize);

}  // namespace media
