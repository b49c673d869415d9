#include "logger/missoes.h"

#include "core/datas.h"
#include "core/literais.h"
#include "data/dialecto.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace {

constexpr qint64 antesDoInicio = 20 * 3600 + 60 + 1; // seconds

QDateTime aoMinuto(const QDateTime &instante) {
    return {instante.date(), QTime(instante.time().hour(), instante.time().minute()), Qt::UTC};
}

QVariantList juntar(QVariantList a, const QVariantList &b) {
    a.append(b);
    return a;
}

} // namespace

bool ChaveMissao::completa() const {
    return !LoggerID.isEmpty() && !Nomelogger.isEmpty() && !DescricaoMissao.isEmpty() && !Nmissao.isEmpty();
}

QString ChaveMissao::onde() {
    return u"LoggerID = ? AND Nomelogger = ? AND DescricaoMissao = ? AND NMissao = ?"_s;
}

QVariantList ChaveMissao::valores() const {
    return {LoggerID, Nomelogger, DescricaoMissao, Nmissao};
}

namespace missoes {

bool emAlarme(double temperatura, double maximo, double minimo) {
    return temperatura >= maximo || temperatura <= minimo;
}

void guardarCabeca(const Cabeca &c, const std::function<void()> &passar) {
    const QVariantList chave = c.chave.valores();
    const QVariantList resto = {datas::textoBD(c.DataProg), datas::textoBD(c.DataFimMissao), c.Max, c.Min};
    Transaccao transaccao(cnBD());
    // The key is written too: it compares without case, and the button's spelling is the one in force.
    const qint64 mudadas = cnBD().executar(u"UPDATE DS1921head SET LoggerID = ?, Nomelogger = ?, DescricaoMissao = ?, "
                                           "NMissao = ?, DataProg = ?, DataFimMissao = ?, Max = ?, Min = ? WHERE "_s +
                                               ChaveMissao::onde(),
                                           juntar(juntar(chave, resto), chave));
    if (mudadas == 0)
        cnBD().executar(u"INSERT INTO DS1921head (LoggerID, Nomelogger, DescricaoMissao, NMissao, DataProg, "
                        "DataFimMissao, Max, Min, Flag, Calibracoes) VALUES (?, ?, ?, ?, ?, ?, ?, ?, 'NC', ?)"_s,
                        juntar(juntar(chave, resto), {c.Calibracoes}));
    transaccao.confirmar(passar);
}

QDateTime VerificaDataMaximaPraSensor(const ChaveMissao &chave, const QDateTime &inicioMissao) {
    Recordset rs =
        cnBD().consultar(u"SELECT MAX(Data) AS DataM FROM DS1921 WHERE "_s + ChaveMissao::onde(), chave.valores());
    if (rs.avancar() && rs.dataHora(0).isValid())
        return rs.dataHora(0);
    return inicioMissao.isValid() ? inicioMissao.addSecs(-antesDoInicio) : QDateTime(QDate(1900, 1, 1), {}, Qt::UTC);
}

int juntarAmostras(const ChaveMissao &chave, const std::vector<Amostra> &amostras, double maximo, double minimo,
                   const QDateTime &DataUltimaLeitura, const std::function<void()> &passar) {
    Transaccao transaccao(cnBD());
    Insercao linha(cnBD(), u"DS1921"_s,
                   {u"LoggerID"_s, u"Nomelogger"_s, u"DescricaoMissao"_s, u"NMissao"_s, u"Data"_s, u"Temperatura"_s,
                    u"Max"_s, u"Min"_s, u"Alarm"_s, u"flag"_s});
    linha.texto(0, chave.LoggerID);
    linha.texto(1, chave.Nomelogger);
    linha.texto(2, chave.DescricaoMissao);
    linha.texto(3, chave.Nmissao);
    linha.real(6, maximo);
    linha.real(7, minimo);
    linha.texto(9, u""_s);
    int gravadas = 0;
    for (const Amostra &a : amostras) {
        const QDateTime minuto = aoMinuto(a.Data);
        if (!minuto.isValid() || minuto <= DataUltimaLeitura)
            continue;
        linha.texto(4, datas::textoBD(minuto));
        linha.real(5, a.Temperatura);
        linha.texto(8, emAlarme(a.Temperatura, maximo, minimo) ? u"TRUE"_s : u"FALSE"_s);
        linha.gravar();
        ++gravadas;
        passar();
    }
    transaccao.confirmar(passar);
    return gravadas;
}

int UltimoNumeroMissaoDoRegistador(const QString &LoggerID, const QString &Nomelogger, const QString &DescricaoMissao) {
    Recordset rs = cnBD().consultar(u"SELECT MAX("_s + dialecto::comoInteiro(u"NMissao") +
                                        u") AS Maxi FROM DS1921head WHERE LoggerID = ? "
                                        "AND Nomelogger = ? AND DescricaoMissao = ?"_s,
                                    {LoggerID, Nomelogger, DescricaoMissao});
    return rs.avancar() && !rs.nulo(0) ? int(rs.inteiro(0)) : 0;
}

bool temAmostras(const ChaveMissao &chave) {
    return cnBD()
        .consultar(u"SELECT 1 FROM DS1921 WHERE "_s + ChaveMissao::onde() + u" LIMIT 1", chave.valores())
        .avancar();
}

int contarAmostras(const ChaveMissao &chave) {
    Recordset rs = cnBD().consultar(u"SELECT COUNT(*) FROM DS1921 WHERE "_s + ChaveMissao::onde(), chave.valores());
    return rs.avancar() ? int(rs.inteiro(0)) : 0;
}

int minutosGuardados(const ChaveMissao &chave, const QDateTime &de, const QDateTime &ate) {
    const bool completa = chave.completa();
    Recordset rs =
        cnBD().consultar(u"SELECT COUNT(DISTINCT Data) FROM DS1921 WHERE "_s +
                             (completa ? ChaveMissao::onde() : u"LoggerID = ?"_s) + u" AND Data BETWEEN ? AND ?",
                         juntar(completa ? chave.valores() : QVariantList{chave.LoggerID},
                                {datas::textoBD(aoMinuto(de)), datas::textoBD(aoMinuto(ate))}));
    return rs.avancar() ? int(rs.inteiro(0)) : 0;
}

bool temCabeca(const ChaveMissao &chave) {
    return cnBD().consultar(u"SELECT 1 FROM DS1921head WHERE "_s + ChaveMissao::onde(), chave.valores()).avancar();
}

void fechar(const ChaveMissao &chave, const QDateTime &fim) {
    cnBD().executar(u"UPDATE DS1921head SET DataFimMissao = ? WHERE "_s + ChaveMissao::onde(),
                    juntar({datas::textoBD(fim)}, chave.valores()));
}

void EliminarMissao(const ChaveMissao &chave) {
    Transaccao transaccao(cnBD());
    cnBD().executar(u"DELETE FROM DS1921 WHERE "_s + ChaveMissao::onde(), chave.valores());
    cnBD().executar(u"DELETE FROM DS1921head WHERE "_s + ChaveMissao::onde(), chave.valores());
    transaccao.confirmar();
}

} // namespace missoes
