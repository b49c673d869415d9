#pragma once

#include <QtGlobal>

#include <array>

// The colours of series, as OLE numbers: blue in the high byte. Points beyond a limit have that of the limit.
namespace cores {

inline constexpr quint32 maximo = 0x0000FF; // the line of the upper limit
inline constexpr quint32 minimo = 0xFF0000;
inline constexpr quint32 leituras = 0x00FF00; // of one sensor, where its limits are shown
inline constexpr quint32 amostras = 0x007000; // of the button on the reader

// Where several are drawn, in order of use.
inline constexpr std::array<quint32, 16> paleta{255, 33023,   65535,   65408,   16711808, 16711680, 16744448, 16776960,
                                                0,   8047359, 4210816, 8388863, 39372,    6750182,  9091072,  9408399};

} // namespace cores
