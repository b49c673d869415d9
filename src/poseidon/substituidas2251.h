#pragma once

#include "core/literais.h"
#include "data/celula.h"

#include <QStringList>

#include <functional>
#include <memory>
#include <vector>

class FicheiroSeguro;

// The file of the readings that a log took out of the tables without bringing an equal one.
//
// Lines of fields parted by tabs. A head (form, unit, moment), then one section a step: "tabela" with the table and
// its columns, groups of rows of one channel and second, and "fim" with the number of lines and the checksum of the
// section. A section is on the disk before its step is confirmed, so what has no end took nothing away.
namespace substituidas2251 {

const QString fimDoNome = u".substituidas"_s;
constexpr char forma[] = "Vistrel substituidas 1";

// The rows of a group; each begins with its letter and its row number.
enum Especie : char {
    Ficou = 'F',       // stood there and still does
    Substituida = 'S', // became another reading: the flag that it got, then all its values
    Apagada = 'A',     // all its values
    Junta = 'J',       // was not there before: all its values
};
constexpr char grupo[] = "G";
constexpr char fim[] = "fim";
constexpr char cabecaDaTabela[] = "tabela";

// A value in a field: a letter for its kind and its text, with tabs, line ends and backslashes marked.
QByteArray escrita(const Celula &celula);
bool lida(QByteArrayView campo, Celula &celula); // false when it is none

class Escritor {
public:
    // Nothing is made before there is something to keep. <passar> lets events run and may throw.
    Escritor(const QString &nome, const QString &unidade, std::function<void()> passar);
    ~Escritor(); // drops a section without end

    void iniciarSeccao(const QString &tabela, const QStringList &colunas);
    void iniciarGrupo();
    void linha(Especie especie, qint64 lugar, const std::vector<Celula> &celulas, const Celula *flag = nullptr);
    void despejar();       // what is gathered goes to the file, events run
    void terminarSeccao(); // on the disk, with its end
    QString nome() const;  // of the file; empty while there is none
    bool falhou() const { return m_falhou; }

private:
    void juntar(const QByteArray &texto);
    void exigir(bool feito);

    std::unique_ptr<FicheiroSeguro> m_ficheiro;
    QString m_unidade;
    QByteArray m_porEscrever;
    QByteArray m_inicioDaSeccao; // until its first group
    struct Soma;
    std::unique_ptr<Soma> m_contas;
    qint64 m_antes = 0; // length of the file without the section
    qint64 m_linhas = 0;
    qint64 m_leituras = 0;
    bool m_naSeccao = false;
    bool m_falhou = false;
};

} // namespace substituidas2251
