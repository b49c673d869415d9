#pragma once

#include <QDateTime>
#include <QString>

#include <functional>
#include <vector>

// The control that owns all mission work of a DS1921 button. It opens and ends its own sessions, so no session of the
// caller may be open while a member runs. Waits through barramento().passar.
class DS1921 {
public:
    struct Amostra {
        QDateTime Data;           // wall clock, whole minutes
        double Temperatura = 0.0; // degrees Celsius
    };

    // Set by the form before use.
    qint16 PortaTipo = 0;
    qint16 PortaNumero = 0;

    // Set by ActualizarEstado; those marked * are written by ProgramarMissao.
    QString TipoRegistador; // "H", "Z" or "G" for any other
    QString ROMID;          // 16 upper-case hexadecimal digits, the CRC first, the family last
    bool MissaoEmCurso = false;
    QDateTime InicioAmostragem;  // 1900-01-01 or earlier: no sample taken yet
    float LimiteAlto = 0.0F;     // * degrees Celsius
    float LimiteBaixo = 0.0F;    // *
    qint32 MinutosAtraso = 0;    // *
    qint16 IntervaloAmostra = 0; // * minutes, 0 without a mission ever
    bool CicloContinuo = false;  // *
    QDateTime RelogioTempoReal;
    qint32 AmostrasNaMemoria = 0;             // also of a mission that runs no more
    QDateTime PrimeiraAmostra, UltimaAmostra; // of those; invalid without a start that is told

    // Told while a log is read: pages so far, and all of them.
    std::function<void(int feitas, int todas)> aoLerPagina;

    qint16 ActualizarEstado();   // 1 = logger read, less than 1 = none
    qint16 ProgramarMissao();    // sets the clock to the PC's, clears the memory, starts the mission; 1 = started
    qint16 TerminarAmostragem(); // 1 = no mission runs any more
    qint16 LimparMemoria();      // 1 = cleared
    // Both fill the same array; a caller runs them one after the other. Only the second reads the button, the first
    // empties the array. The count is 0 when nothing was read.
    void LerAmostras(std::vector<Amostra> &amostras);
    qint16 ContarAmostras(std::vector<Amostra> &amostras);
};
