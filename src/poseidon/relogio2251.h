#pragma once

#include <QString>

// A unit's clock: compared with the workstation's, and set through the dialogue of the unit's console.
namespace relogio2251 {

constexpr int toleranciaMinutos = 20;
constexpr int esperaDepoisDeApagarMs = 2000;
constexpr int tempoDoDialogoMs = 5000;
constexpr int esperaDepoisDoAcertoMs = 5000;

enum Comparacao { emTempo = 1, difere = 0, semDocumento = -1, semTime = -2, dataInvalida = -3 };
struct Verificacao {
    Comparacao resultado = semDocumento;
    QString dataHora; // of the unit, in the local form; empty when it has none
};
Verificacao VerificarDataDoPoseidon(const QString &xml);
// True when the unit's clock lies more than 20 minutes away; a date in other than three parts is away.
bool VerificarSeDataEstaDesactualizada(const QString &data, const QString &hora);

// "c" and the workstation's date and time: what the console takes.
QString EstruturarData();

// The console dialogue: told what arrives, it says what to send.
class Dialogo {
public:
    struct Resposta {
        QString enviar; // empty: nothing
        bool fechar = false;
    };
    Resposta receber(const QString &texto);
    bool confirmado() const { return m_confirmado; } // the console has said "OK" by the time of its last key
    int passo() const { return m_passo; }

private:
    int m_passo = 1;
    QString m_buffer;
    bool m_confirmado = false;
};

// How setting the clock ended. <xml> is the document read afterwards, empty when none came.
struct Resultado {
    int codigo = 0; // 1 to 5
    QString dataHora;
};
Resultado resultadoDoAcerto(bool confirmado, const QString &xml);

struct Mensagem {
    QString texto;
    bool critica = true;
};
Mensagem mensagemDoAcerto(const Resultado &resultado);
QString perguntaDoAcerto(const QString &unidade); // whose readings are lost

} // namespace relogio2251
