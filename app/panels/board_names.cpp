#include "app/panels/board_names.h"

#include <cstdio>
#include <iterator>

namespace panels {

namespace {

struct RetailBoard {
    PciIds ids;
    const char* name;
};

// Boards sold under a name of their own, which the GPU combo shows instead of the chip's.
constexpr RetailBoard kRetailBoards[] = {
    {{0x10DE, 0x1080, 0x1043, 0x83BB}, "ASUS ROG MATRIX GTX 580"},
    {{0x10DE, 0x1088, 0x1043, 0x83A3}, "ASUS ENGTX590/3DIS/3GD5"},
    {{0x10DE, 0x1201, 0x1043, 0x83AE}, "ASUS ENGTX560 DC2 TOP/2DI/1GD5"},
    {{0x10DE, 0x1086, 0x1043, 0x8387}, "ASUS ENGTX570 DCII/2DIS/1280MD5"},
    {{0x10DE, 0x1200, 0x1043, 0x8390}, "ASUS ENGTX560 TI DCII TOP/2DI/1GD5"},
    {{0x10DE, 0x0DE0, 0x1043, 0x838A}, "ASUS ENGT440/DI/1GD5"},
    {{0x10DE, 0x1199, 0x1458, 0xD001}, "GIGABYTE BRIX GTX 760"},
    {{0x1002, 0x68BA, 0x1043, 0x040B}, "ASUS EAH6770 DC SL/2DI/1GD5"},
    {{0x1002, 0x6719, 0x1043, 0x03BE}, "ASUS EAH6850 DCII/2DI4S/2GD5"},
    {{0x1002, 0x6758, 0x1043, 0x03EA}, "ASUS EAH6670/DIS/1GD5"},
};
static_assert(std::size(kRetailBoards) == 10);

struct BoardMaker {
    uint32_t subvendor;
    const char* format;
};

// NVIDIA's own boards are written without blanks around the dash.
constexpr BoardMaker kBoardMakers[] = {
    {0x10DE, "NVIDIA (%.4X-%.4X)"},       {0x1002, "AMD (%.4X - %.4X)"},     {0x5333, "S3 (%.4X - %.4X)"},
    {0x8086, "Intel (%.4X - %.4X)"},      {0x3842, "EVGA (%.4X - %.4X)"},    {0x1462, "MSI (%.4X - %.4X)"},
    {0x1043, "ASUS (%.4X - %.4X)"},       {0x1048, "ELSA (%.4X - %.4X)"},    {0x105B, "Foxconn (%.4X - %.4X)"},
    {0x1849, "ASRock (%.4X - %.4X)"},     {0x107D, "Leadtek (%.4X - %.4X)"}, {0x19DA, "Zotac (%.4X - %.4X)"},
    {0x1458, "Gigabyte (%.4X - %.4X)"},   {0x1569, "Palit (%.4X - %.4X)"},   {0x174B, "Sapphire (%.4X - %.4X)"},
    {0x1682, "XFX (%.4X - %.4X)"},        {0x103C, "HP (%.4X - %.4X)"},      {0x1B4C, "Galaxy (%.4X - %.4X)"},
    {0x1025, "Acer (%.4X - %.4X)"},
};
static_assert(std::size(kBoardMakers) == 19);

}  // namespace

const char* retailBoardName(const PciIds& ids) {
    for (const RetailBoard& board : kRetailBoards)
        if (board.ids.vendor == ids.vendor && board.ids.device == ids.device &&
            board.ids.subvendor == ids.subvendor && board.ids.subdevice == ids.subdevice)
            return board.name;
    return nullptr;
}

void formatBoardVendor(uint32_t subvendor, uint32_t subdevice, char* text, size_t size) {
    if (!text || size == 0) return;
    const char* format = "%.4X - %.4X";
    for (const BoardMaker& maker : kBoardMakers)
        if (maker.subvendor == subvendor) format = maker.format;
    std::snprintf(text, size, format, subvendor, subdevice);
}

}  // namespace panels
