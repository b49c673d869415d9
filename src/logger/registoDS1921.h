#pragma once

#include "platform/onewire/tmex.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <span>

// The text record that travels in the user memory of a button: four fields over chained pages of 28 characters.
// Nothing here touches a bus.
namespace registoDS1921 {

using Campos = std::array<QString, 4>; // number and mission, logger, ROM id and interval, calibration

constexpr int paginasLidas = 6;
constexpr int ultimaPagina = 12;
constexpr int caracteresPorPagina = 28;
constexpr int bytesPorPacote = 29;
constexpr int caracteresLidos = 30; // of every packet, whatever its length
constexpr int digitosDoNumero = 4;
constexpr int tamanhoDoROMID = 16;
// What still comes back whole when every other field is as long as it gets.
constexpr int maximoDeDescricao = 60;

// The file system's directory with one entry. Written as it stands, never read.
constexpr std::array<quint8, 15> directorio = {0xAA, 0x00, 0x80, 0x1F, 0x00, 0x00, 0x00, 0x54,
                                               0x54, 0x45, 0x43, 0x00, 0x01, 0x04, 0x00};

// LinhasMemoria: element i goes to page i, element 0 is empty. What does not fit into twelve pages is lost.
QStringList CriarEstruturaDasLinhas(const QString &campo0, const QString &campo1, const QString &campo2,
                                    const QString &campo3);

// False: not this format. An empty text is a record of empty fields.
bool TratarMemoriaDS1921(const QString &texto, Campos &campos);
bool TratarMemoriaDS1921_OldVersion(const QString &texto, Campos &campos, const QString &numero);

// A page as it was read: the length of its packet, negative without one, and the packet's text.
struct PaginaDeTexto {
    int tamanho = -1;
    QString texto;
};
// Every page that the record is chained over is there. A button without any packet has an empty record.
bool registoInteiro(std::span<const PaginaDeTexto> paginas);

// One character a byte.
QString textoDosBytes(std::span<const quint8> bytes);
QByteArray bytesDoTexto(const QString &texto); // at most a packet
bool cabeNoRegisto(QChar c);                   // can such a byte be told from what chains the pages?

QString numeroDeMissao(int numero); // four digits
// The next number after the highest stored one.
int numeroSeguinte(int maiorGuardado);

// The ROM number as only the old record uses it: the last byte, the family, takes three characters.
QString textoROM(const tmex::NumeroROM &numero);
// The number as the control and the database know it.
QString ROMIDde(const tmex::NumeroROM &numero);
quint32 ShiftBitsLeft(quint32 valor, int bits);

// What a read of the record means to the form.
struct Registo {
    QString descricaoRegistador; // "x" without one
    QString TextoMissao;         // without its number
    QString descricaoMissao;     // for the assistant
    qint16 NumeroMissaoActual = 0;
    QString numeroMissao; // as shown
    double Calibracao = 0;
    std::optional<QString> calibracao; // for the list; without one the list is left alone
    QString intervalo;
    bool VersaoAntiga = false;
};
// None: the text fails both formats.
std::optional<Registo> decifrar(const QString &texto, const QString &numero);

// A calibration as written: its value, 0 when it is no number.
double valorDeCalibracao(const QString &texto);

// Register page, as read into 33 bytes.
constexpr qint16 paginaDeRegistos = 16;
double LerAmostrasDispositivo(const tmex::Pagina &pagina);
double LerAmostrasMissao(const tmex::Pagina &pagina);
bool RolloverOcorreu(const tmex::Pagina &pagina);

} // namespace registoDS1921
