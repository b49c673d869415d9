#include "views/notas.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace {

constexpr qsizetype maximoMostrado = 200;

QString textoAUX(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

QString condicao(const notas::Linha &linha) {
    QStringList partes;
    for (const QString &coluna : linha.colunas)
        partes.append(dialecto::mesmo(coluna, u"?"));
    return partes.join(u" AND "_s);
}

// The row itself while it stands under its number, otherwise one that is the same in all else.
QString escolher(const notas::Linha &linha, const QString &que) {
    return u"SELECT %1 FROM %2 WHERE %3 ORDER BY %4 <> ?, %5, %4 LIMIT 1"_s.arg(
        que, linha.tabela, condicao(linha), dialecto::ordem, dialecto::outro(dialecto::aLetra(u"flag"), u"?"));
}

QVariantList valoresParaEscolher(const notas::Linha &linha) {
    return linha.valores + QVariantList{linha.numero, linha.nota};
}

} // namespace

namespace notas {

std::optional<Linha> procurar(const Lugar &lugar) {
    Linha linha;
    linha.tabela = lugar.tabela.toString();
    linha.colunas = {lugar.colunaData.toString()};
    for (const QStringView coluna : lugar.colunas)
        if (!coluna.isEmpty())
            linha.colunas.append(coluna.toString());
    if (!lugar.colunaValor.isEmpty())
        linha.colunas.append(lugar.colunaValor.toString());
    Recordset rs = cnBD().consultar(u"SELECT "_s + linha.colunas.join(u", "_s) + u", flag, " + dialecto::ordem +
                                        u" FROM " + linha.tabela + u" WHERE " + lugar.colunaData + u" = ? AND " +
                                        escolhas::condicao(lugar.colunas) + u" ORDER BY " + dialecto::ordem,
                                    QVariantList{datas::textoBD(lugar.data)} + escolhas::valores(lugar.chave));
    const int quantas = int(linha.colunas.size());
    while (rs.avancar()) {
        if (lugar.eDoPonto && !lugar.eDoPonto(rs, quantas - 1))
            continue;
        for (int i = 0; i < quantas; ++i)
            linha.valores.append(rs.guardado(i));
        linha.nota = rs.guardado(quantas);
        linha.numero = rs.inteiro(quantas + 1);
        return linha;
    }
    return std::nullopt;
}

QString texto(const Linha &linha) {
    return linha.nota.typeId() == qMetaTypeId<Cru>() ? QString::fromUtf8(linha.nota.value<Cru>().bytes)
                                                     : linha.nota.toString();
}

Resultado gravar(const Linha &linha, const QString &nota) {
    const qint64 alteradas = cnBD().executar(
        u"UPDATE "_s + linha.tabela + u" SET flag = ? WHERE " + dialecto::ordem + u" = (" +
            escolher(linha, dialecto::ordem.toString()) + u") AND " + dialecto::mesmo(dialecto::aLetra(u"flag"), u"?"),
        QVariantList{nota} + valoresParaEscolher(linha) + QVariantList{linha.nota});
    if (alteradas == 1)
        return Resultado::Gravada;
    Recordset rs = cnBD().consultar(escolher(linha, dialecto::ordem.toString()), valoresParaEscolher(linha));
    return rs.avancar() ? Resultado::Alterada : Resultado::SemLinha;
}

void avisar(Resultado resultado, const Linha &linha) {
    QString aviso;
    if (resultado == Resultado::SemLinha) {
        aviso = textoAUX(u"NotaSemLinha"_s, u"A nota não foi gravada: a leitura a que pertence já não está na base de "
                                            "dados, ou mudou de valor. O texto continua na caixa."_s);
    } else {
        Recordset rs = cnBD().consultar(escolher(linha, u"flag"_s), valoresParaEscolher(linha));
        const QString actual = rs.avancar() ? paraMostrar(rs.texto(0)) : QString();
        aviso = textoAUX(u"NotaAlterada"_s, u"A nota não foi gravada: a que está na base de dados foi entretanto "
                                            "alterada para \"%1\". O texto continua na caixa."_s)
                    .arg(actual.size() > maximoMostrado ? actual.left(maximoMostrado) + u"..." : actual);
    }
    if (Dialogos *dialogos = estado().ambiente.dialogos)
        dialogos->mensagem(aviso, Dialogos::Estilo::Exclamacao);
}

QString paraGuardar(const QString &texto) {
    const QString aparado = texto.trimmed();
    return aparado.isEmpty() ? u" "_s : aparado;
}

QString paraMostrar(const QString &flag) {
    return flag == u" " ? QString() : flag;
}

} // namespace notas
