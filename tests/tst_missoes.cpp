#include "data/ligacao.h"
#include "logger/missoes.h"
#include "logger/prazos1921.h"
#include "logger/sequenciasAlarme.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

#include <QTest>

namespace {

const ChaveMissao chave{u"D63B2000FBC52B21"_s, u"Registador d'Água"_s, u"Rota \"1\""_s, u"0001"_s};

QDateTime instante(const QString &texto) {
    QDateTime t = QDateTime::fromString(texto, u"yyyy-MM-dd HH:mm:ss"_s);
    t.setTimeSpec(Qt::UTC);
    return t;
}
const QDateTime inicio = instante(u"2026-03-02 09:00:00"_s);

std::vector<missoes::Amostra> amostras(int de, int quantas, double temperatura = 20, int segundos = 0) {
    std::vector<missoes::Amostra> lista;
    for (int i = de; i < de + quantas; ++i)
        lista.push_back({inicio.addSecs(600LL * i + segundos), temperatura});
    return lista;
}

int juntar(const std::vector<missoes::Amostra> &lista, const ChaveMissao &onde = chave) {
    return missoes::juntarAmostras(onde, lista, 25, 10, missoes::VerificaDataMaximaPraSensor(onde, inicio));
}

missoes::Cabeca cabeca(const ChaveMissao &c = chave) {
    return {c, inicio, inicio.addDays(14), 25, 10.5, u"0,5"_s};
}

} // namespace

class tst_missoes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(); }
    void cleanup() { m_instalacao.reset(); }

    void cabecaNovaEActualizada() {
        missoes::guardarCabeca(cabeca());
        QCOMPARE(
            m_instalacao->linha(u"SELECT LoggerID, Nomelogger, DescricaoMissao, NMissao, DataProg, DataFimMissao, Max, "
                                "Min, Flag, Calibracoes FROM DS1921head"_s),
            (QVariantList{chave.LoggerID, chave.Nomelogger, chave.DescricaoMissao, u"0001"_s, u"2026-03-02 09:00:00"_s,
                          u"2026-03-16 09:00:00"_s, 25, 10.5, u"NC"_s, u"0,5"_s}));
        m_instalacao->executar(u"UPDATE DS1921head SET Flag = 'C'"_s);
        missoes::Cabeca outra = cabeca();
        outra.DataFimMissao = inicio.addDays(1);
        outra.Max = 30;
        outra.Calibracoes = u"-1,0"_s;
        missoes::guardarCabeca(outra);
        // Flag and calibrations stay as first stored.
        QCOMPARE(
            m_instalacao->linha(u"SELECT DataFimMissao, Max, Flag, Calibracoes, (SELECT COUNT(*) FROM DS1921head) FROM "
                                "DS1921head"_s),
            (QVariantList{u"2026-03-03 09:00:00"_s, 30, u"C"_s, u"0,5"_s, 1}));
    }

    void juntaSoOQueENovo() {
        QCOMPARE(missoes::VerificaDataMaximaPraSensor(chave, inicio), instante(u"2026-03-01 12:58:59"_s));
        QCOMPARE(juntar(amostras(0, 5)), 5);
        QCOMPARE(juntar(amostras(0, 5)), 0);
        QCOMPARE(juntar(amostras(0, 8)), 3);
        // The button has wrapped: what it no longer holds stays.
        QCOMPARE(juntar(amostras(6, 8)), 6);
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(), 14);
        QCOMPARE(um(u"SELECT COUNT(DISTINCT Data) FROM DS1921"_s).toInt(), 14);
        // Another mission of the same button begins anew.
        ChaveMissao outra = chave;
        outra.Nmissao = u"0002"_s;
        QCOMPARE(juntar(amostras(0, 2), outra), 2);
    }

    void segundosCaem() {
        QCOMPARE(juntar(amostras(0, 1, 20, 59)), 1);
        QCOMPARE(um(u"SELECT Data FROM DS1921"_s).toString(), u"2026-03-02 09:00:00"_s);
        QCOMPARE(juntar(amostras(0, 1, 21, 30)), 0); // the same minute
    }

    void notaFica() {
        juntar(amostras(0, 3));
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921 WHERE flag = ''"_s).toInt(), 3);
        m_instalacao->executar(u"UPDATE DS1921 SET flag = 'porta aberta' WHERE Data = '2026-03-02 09:10:00'"_s);
        juntar(amostras(0, 4));
        QCOMPARE(um(u"SELECT flag FROM DS1921 WHERE Data = '2026-03-02 09:10:00'"_s).toString(), u"porta aberta"_s);
    }

    void alarmes_data() {
        const Tabela<double, QString> caso("temperatura", "alarme");
        caso("between", 24.999, u"FALSE"_s);
        caso("at the high limit", 25.0, u"TRUE"_s);
        caso("at the low limit", 10.0, u"TRUE"_s);
        caso("just above the low one", 10.001, u"FALSE"_s);
        caso("three decimals", -0.125, u"TRUE"_s);
    }
    void alarmes() {
        QFETCH(double, temperatura);
        juntar(amostras(0, 1, temperatura));
        const QVariantList linha = m_instalacao->linha(u"SELECT Alarm, Temperatura, Max, Min FROM DS1921"_s);
        QTEST(linha[0].toString(), "alarme");
        QCOMPARE(linha[1].toDouble(), temperatura);
        QCOMPARE(linha[2].toDouble(), 25.0);
        QCOMPARE(linha[3].toDouble(), 10.0);
    }

    // The third row cannot be stored: neither are the two before it.
    void falhaNaoDeixaMetade() {
        m_instalacao->executar(
            u"CREATE TRIGGER recusa BEFORE INSERT ON DS1921 WHEN NEW.Data = '2026-03-02 09:20:00' BEGIN "
            "SELECT RAISE(ABORT, 'recusada'); END"_s);
        QVERIFY_THROWS_EXCEPTION(std::exception, juntar(amostras(0, 4)));
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(), 0);
        m_instalacao->executar(u"DROP TRIGGER recusa"_s);
        QCOMPARE(juntar(amostras(0, 4)), 4);
    }

    void numeros() {
        const auto ultimo = [](const QString &nome, const QString &missao) {
            return missoes::UltimoNumeroMissaoDoRegistador(chave.LoggerID, nome, missao);
        };
        QCOMPARE(ultimo(chave.Nomelogger, chave.DescricaoMissao), 0);
        for (const char *numero : {"0009", "0010", "0002"}) {
            ChaveMissao c = chave;
            c.Nmissao = QString::fromLatin1(numero);
            missoes::guardarCabeca(cabeca(c));
        }
        QCOMPARE(ultimo(chave.Nomelogger, chave.DescricaoMissao), 10); // by value
        QCOMPARE(ultimo(chave.Nomelogger, u"outra"_s), 0);
        QCOMPARE(ultimo(u"outro"_s, chave.DescricaoMissao), 0);
    }

    void eliminaSoAMissao() {
        QList<ChaveMissao> chaves(5, chave);
        chaves[1].LoggerID = u"0000000000000021"_s;
        chaves[2].Nomelogger = u"outro"_s;
        chaves[3].DescricaoMissao = u"outra"_s;
        chaves[4].Nmissao = u"0002"_s;
        for (const ChaveMissao &c : chaves) {
            missoes::guardarCabeca(cabeca(c));
            juntar(amostras(0, 3), c);
        }
        missoes::EliminarMissao(chave);
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(), 12);
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), 4);
        QVERIFY(!missoes::temAmostras(chave));
        for (int i = 1; i < chaves.size(); ++i)
            QVERIFY(missoes::temAmostras(chaves[i]));
    }

    void eliminarTudoOuNada() {
        missoes::guardarCabeca(cabeca());
        juntar(amostras(0, 3));
        m_instalacao->executar(
            u"CREATE TRIGGER guarda BEFORE DELETE ON DS1921head BEGIN SELECT RAISE(ABORT, 'não'); END"_s);
        QVERIFY_THROWS_EXCEPTION(std::exception, missoes::EliminarMissao(chave));
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(), 3);
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), 1);
    }

    void fechaEFica() {
        missoes::guardarCabeca(cabeca());
        missoes::fechar(chave, instante(u"2026-03-05 10:11:12"_s));
        QCOMPARE(m_instalacao->linha(u"SELECT DataFimMissao, Flag FROM DS1921head"_s),
                 (QVariantList{u"2026-03-05 10:11:12"_s, u"NC"_s}));
    }

    void atraso_data() {
        const Tabela<QString, int> caso("comeca", "minutos");
        caso("past", u"2026-03-02 08:00:00"_s, 0);
        caso("this minute", u"2026-03-02 09:00:59"_s, 0);
        caso("next minute", u"2026-03-02 09:01:00"_s, 1);
        caso("41 days", u"2026-04-12 09:00:00"_s, 59040);
        caso("longer", u"2026-04-12 09:01:00"_s, 59040);
        caso("years", u"2099-01-01 00:00:00"_s, 59040);
    }
    void atraso() {
        QFETCH(QString, comeca);
        QTEST(prazos1921::minutosAte(inicio.addSecs(45), instante(comeca)), "minutos");
    }

    void fimPrevisto() {
        const QString comeco = u"02/03/2026 09:00:00"_s;
        QCOMPARE(prazos1921::DataFimPrevista(comeco, u"10"_s), u"16/03/2026 14:20:00"_s);
        QCOMPARE(prazos1921::DataFimPrevista(comeco, u"0"_s), comeco);
        for (const QString &ilegivel : {QString(), u"amanhã"_s})
            QCOMPARE(prazos1921::DataFimPrevista(ilegivel, u"10"_s), QString());
    }

    // Runs are written as their first and last sample; A is above, B below.
    void sequencias_data() {
        const Tabela<QList<double>, QString> caso("temperaturas", "esperadas");
        caso("none", {20, 21, 22}, {});
        caso("single samples", {25, 20, 26}, u"A0-0 A2-2"_s);
        caso("up to the last", {20, 25, 25}, u"A1-2"_s);
        caso("low", {10, 9, 11}, u"B0-1"_s);
        caso("from above to below", {25, 10, 25}, u"A0-0 B1-1 A2-2"_s);
        caso("both open at the end", {30, 5}, u"A0-0 B1-1"_s);
    }
    void sequencias() {
        QFETCH(QList<double>, temperaturas);
        QStringList achadas;
        SequenciasAlarme s(25, 10, [&](const SequenciasAlarme::Sequencia &q) {
            achadas.append(u"%1%2-%3"_s.arg(q.alta ? u"A"_s : u"B"_s)
                               .arg(inicio.secsTo(q.primeira) / 60)
                               .arg(inicio.secsTo(q.ultima) / 60));
        });
        for (int i = 0; i < temperaturas.size(); ++i)
            s.juntar(inicio.addSecs(60 * i), temperaturas[i]);
        s.fechar();
        QTEST(achadas.join(u' '), "esperadas");
    }

private:
    QVariant um(const QString &sql) { return m_instalacao->linha(sql).value(0); }

    std::unique_ptr<Instalacao> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_missoes)
#include "tst_missoes.moc"
