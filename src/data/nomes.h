#pragma once

#include <QHash>
#include <QString>

#include <functional>

// Names have to be unique in the whole installation.
namespace nomes {

struct Tabela {
    QStringView tabela;
    QStringView coluna;
};

// Every table whose rows bear a name, in the order they are asked.
constexpr Tabela tabelas[] = {
    {u"Damocles", u"Nome"},
    {u"DamoclesInputs", u"Descricao"},
    {u"DamoclesOutputs", u"Descricao"},
    {u"Grupos", u"Descricao"},
    {u"IOcontrollers", u"Descricao"},
    {u"IOcontrollersInputs", u"Descricao"},
    {u"IOcontrollersOutputs", u"Descricao"},
    {u"PortBox", u"Descricao"},
    {u"PoseidonInputs", u"Descricao"},
    {u"PoseidonInputsSpider", u"Descricao"},
    {u"PoseidonOutputs", u"Descricao"},
    {u"Poseidons", u"Nome"},
    {u"REGRAS_CondicoesGruposHead", u"Descricao"},
    {u"REGRAS_CondicoesInputs", u"NomeCondicao"},
    {u"REGRAS_CondicoesSensores", u"NomeCondicao"},
    {u"REGRAS_Emails", u"Descricao"},
    {u"REGRAS_Outputs", u"Descricao"},
    {u"REGRAS_Sms", u"Descricao"},
    {u"Sensores", u"Descricao"},
    {u"SensUI_Escalas", u"NomeEscala"},
};

// The beginning of a text: at most so many characters, and no half of one.
QString inicio(const QString &texto, qsizetype maximo);

// All names, read once for a batch that gives many: asking the tables for each is a run through all of them, and a
// thousand rows of one name would ask half a million times. Whoever changes a name meanwhile tells it here.
class Registo {
public:
    Registo(); // throws Falha
    bool existe(const QString &nome) const { return m_quantos.contains(dobrado(nome)); }
    void juntar(const QString &nome);
    void tirar(const QString &nome);
    // The first free name of the form antes(n) + n + depois, counting n from 1.
    QString comNumero(const std::function<QString(int n)> &antes, QStringView depois = {});

private:
    static QString dobrado(QString nome); // as the tables compare: without the case of the plain letters
    QHash<QString, int> m_quantos;
    QHash<QString, int> m_livres; // by what stands before the number: below it all are taken
};

} // namespace nomes
