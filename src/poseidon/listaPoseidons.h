#pragma once

#include <QList>
#include <QString>

#include <vector>

// The list of units: its rows in memory and the table Poseidons. The rows' cells are texts, as the grid shows them.
namespace listaPoseidons {

constexpr qsizetype maximoDoNome = 15;

// A unit as a search found it.
struct Dispositivo {
    QString nome, mac;
    int modelo = 0;
    int porta = 80;
    QString endereco;
};

struct Linha {
    QString SELECT; // "SIM" or "NAO"
    QString UDP;    // "R": added by hand and not seen by a search since
    QString IP, MAC, PORTA, TIPO, DESCRICAO, TIPON;
    QString MODO; // "AUT" or "MAN"
    QString ACT;
    QString NLEITURAS;   // at least 1
    QString BLNERASELOG; // "1" or "0"
    int DSTAT = 7;
};

enum class Achado { Ignorado, Conhecido, Novo };

// Rows are numbered from 1.
class Lista {
public:
    int total() const { return int(m_linhas.size()); }
    const Linha &linha(int numero) const { return m_linhas.at(size_t(numero) - 1); }
    Linha &linha(int numero) { return m_linhas.at(size_t(numero) - 1); }

    // Adds the units of the table that the list lacks. A failure goes to the error road.
    void CarregarListaDeDispositivosJaExistentes();
    int AdicionarLinhaPoseidon(const QString &ip, int porta, const QString &mac, int tipoN, const QString &tipo,
                               const QString &nome, const QString &modo, bool seleccionar, bool apagar, int nLeituras);
    // A unit that answered a search: a known row takes its name, the address and port of the row stay.
    Achado juntar(const Dispositivo &dispositivo);
    // A unit added by hand, from its setup.xml.
    Achado CarregarDispositivoRemoto(const QString &xml, const QString &endereco);

    int VerificarSeJaExisteNaLista(const QString &mac) const;       // the row, or 0
    bool VerificarSeIPJaExiste(const QString &ip, int linha) const; // in any other row
    bool algumaSeleccionada() const;

private:
    std::vector<Linha> m_linhas;
};

// What a found unit says otherwise than its row.
struct Alteracoes {
    bool endereco = false;
    bool porta = false;
    bool nome = false;
};
Alteracoes VerificarSeTemDeSeFazerAlteracoes(const QList<Dispositivo> &encontrados, const QString &ip,
                                             const QString &porta, const QString &mac, const QString &nome);

// The port with zeros in front, five characters; empty for a text of any other length than 1 to 5.
QString ConfigurarZerosPortaIOcontroller(const QString &porta);

struct Registo {
    QString ip;
    int modelo = 0;
    QString mac = {};
    QString nome = {};
    int porta = 80;
    QString udp = {};
    bool vistrelS = false;
    bool apagar = false;
    int nLeituras = 1;
};
// A unit that the table lacks is added; of one that it has only a changed name is stored, and
// none that is cut from the stored one. Throws Falha.
void AdicionarBDPoseidons(const Registo &registo);

// True when the table holds the address, listed or not. Throws Falha.
bool existeNaBD(const QString &ip);

// Changes of one unit; false, and a report, when they could not be stored.
bool MudarNomeBDPoseidons(const QString &ip, const QString &nome);
bool MudarIPPORTABDPoseidons(const QString &ip, const QString &novoIP, int porta); // also the key itself
bool SalvarMediasParaBD(const QString &ip, int nLeituras);
bool SalvarchkApagarParaBD(const QString &ip, bool apagar);

} // namespace listaPoseidons
