#include "data/nomes.h"

#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <QStringList>

#include <algorithm>

namespace nomes {

QString inicio(const QString &texto, qsizetype maximo) {
    if (texto.size() <= maximo)
        return texto;
    const bool aMeio = maximo > 0 && texto[maximo].isLowSurrogate() && texto[maximo - 1].isHighSurrogate();
    return texto.left(aMeio ? maximo - 1 : maximo);
}

Registo::Registo() {
    QStringList partes;
    for (const Tabela &t : tabelas)
        partes += u"SELECT %2 FROM %1 WHERE %3"_s.arg(t.tabela, t.coluna, dialecto::eTexto(t.coluna));
    Recordset rs = cnBD().consultar(partes.join(u" UNION ALL "_s));
    while (rs.avancar())
        juntar(rs.texto(0));
}

QString Registo::dobrado(QString nome) {
    for (QChar &c : nome)
        if (c >= u'A' && c <= u'Z')
            c = QChar(c.unicode() + (u'a' - u'A'));
    return nome;
}

void Registo::juntar(const QString &nome) {
    ++m_quantos[dobrado(nome)];
}

void Registo::tirar(const QString &nome) {
    const QString chave = dobrado(nome);
    const auto achado = m_quantos.find(chave);
    if (achado == m_quantos.end() || --*achado > 0)
        return;
    m_quantos.erase(achado);
    // A number that is free again is the first of its like to be tried.
    const qsizetype fim = chave.size() - qsizetype(chave.endsWith(u')'));
    qsizetype algarismos = fim;
    while (algarismos > 0 && chave[algarismos - 1] >= u'0' && chave[algarismos - 1] <= u'9')
        --algarismos;
    const auto livre = m_livres.find(chave.left(algarismos));
    if (livre != m_livres.end())
        *livre = std::min(*livre, chave.mid(algarismos, fim - algarismos).toInt());
}

QString Registo::comNumero(const std::function<QString(int)> &antes, QStringView depois) {
    for (int n = 1;;) {
        const QString comeco = antes(n);
        int &livre = m_livres[dobrado(comeco)];
        if (livre > n) {
            n = livre; // with more digits less may stand before them
            continue;
        }
        if (const QString nome = comeco + QString::number(n) + depois; !existe(nome))
            return nome;
        livre = ++n;
    }
}

} // namespace nomes
