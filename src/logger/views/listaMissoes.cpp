#include "logger/views/listaMissoes.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <array>

namespace listaMissoes {

namespace {

// By their number in Ordem.
constexpr std::array<QStringView, 4> ordens{u"LoggerID, DataProg DESC",
                                            u"Nomelogger, DescricaoMissao, NMissao, DataProg DESC", u"DataProg DESC",
                                            u"DataFimMissao DESC"};

QString dataMostrada(const Recordset &rs, int coluna) {
    const QDateTime data = rs.dataHora(coluna);
    return data.isValid() ? datas::textoDataHora(data) : rs.texto(coluna);
}

} // namespace

QList<Linha> listar(bool concluidas, Ordem ordem) {
    QList<Linha> lista;
    Recordset rs = cnBD().consultar(u"SELECT LoggerID, Nomelogger, DescricaoMissao, NMissao, DataProg, DataFimMissao "
                                    "FROM DS1921head WHERE Flag = ? ORDER BY "_s +
                                        ordens[size_t(ordem)],
                                    {concluidas ? u"C"_s : u"NC"_s});
    while (rs.avancar())
        lista.append({{rs.texto(0), rs.texto(1), rs.texto(2), rs.texto(3)}, dataMostrada(rs, 4), dataMostrada(rs, 5)});
    return lista;
}

void VerificarMissoesConcluidas() {
    // Mostly there is nothing to write, and the list must not wait for whoever is writing.
    QList<std::pair<qint64, QVariant>> terminadas;
    {
        const QDateTime agora = estado().ambiente.agora();
        Recordset rs =
            cnBD().consultar(u"SELECT "_s + dialecto::ordem + u", DataFimMissao FROM DS1921head WHERE Flag = 'NC'"_s);
        while (rs.avancar())
            if (const QDateTime fim = rs.dataHora(1); fim.isValid() && fim < agora)
                terminadas.append({rs.inteiro(0), rs.guardado(1)});
    }
    if (terminadas.isEmpty())
        return;
    Transaccao transaccao(cnBD());
    // Its number alone may be another mission's by now.
    for (const auto &[linha, fim] : terminadas)
        cnBD().executar(u"UPDATE DS1921head SET flag = 'C' WHERE "_s + dialecto::ordem + u" = ? AND Flag = 'NC' AND " +
                            dialecto::mesmo(u"DataFimMissao"_s, u"?"),
                        {linha, fim});
    transaccao.confirmar();
}

} // namespace listaMissoes
