#pragma once

#include <QtGlobal>

#include <array>
#include <span>

// The calls over user memory, register page and search, under the names the system uses. Results as the system tests
// them: 1 or greater than 0 is success, a handle greater than 0 a session, negative a refusal.
namespace tmex {

using Sessao = qint32;
using NumeroROM = std::array<qint16, 8>; // element 0 the family, element 7 the CRC byte
using BufferEstado = std::array<quint8, 5120>;
using Pagina = std::array<quint8, 33>; // 32 bytes of a raw page, the last stays 0
using Pacote = std::array<quint8, 30>; // data of a packet without its length and CRC

Sessao TMExtendedStartSession(qint16 porto, qint16 tipo, const void *reservado = nullptr);
qint16 TMSetup(Sessao sessao);
qint16 TMEndSession(Sessao sessao);
qint16 TMClose(Sessao sessao);
qint16 TMValidSession(Sessao sessao);
qint16 TMTouchReset(Sessao sessao);

qint16 TMFamilySearchSetup(Sessao sessao, BufferEstado &estado, qint16 familia);
qint16 TMNext(Sessao sessao, BufferEstado &estado); // 1 a device, 0 none left, negative an error
qint16 TMRom(Sessao sessao, BufferEstado &estado, NumeroROM &numero);

qint16 TMExtendedReadPage(Sessao sessao, BufferEstado &estado, qint16 pagina, Pagina &destino, qint16 reservado = 0);
// The packet's length; 0 an empty packet, SemPacote a page without a valid one, any other negative a page unread.
constexpr qint16 SemPacote = -3;
qint16 TMReadPacket(Sessao sessao, BufferEstado &estado, qint16 pagina, Pacote &destino, qint16 maximo);
qint16 TMWritePacket(Sessao sessao, BufferEstado &estado, qint16 pagina, std::span<const quint8> dados);

} // namespace tmex
