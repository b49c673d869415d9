#include "logger/missoes.h"
#include "logger/prazos1921.h"
#include "logger/sequenciasAlarme.h"
#include "tests/apoio/instalacao.h"

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

    // Flag and calibrations stay as first stored.
    void cabecaActualizada() {
        missoes::guardarCabeca(cabeca());
        m_instalacao->executar(u"UPDATE DS1921head SET Flag = 'C'"_s);
        missoes::Cabeca outra = cabeca();
        outra.DataFimMissao = inicio.addDays(1);
        outra.Max = 30;
        outra.Calibracoes = u"-1,0"_s;
        missoes::guardarCabeca(outra);
        QCOMPARE(m_instalacao->linha(u"SELECT DataFimMissao, Max, Flag, Calibracoes, COUNT(*) FROM DS1921head"_s),
                 (QVariantList{u"2026-03-03 09:00:00"_s, 30, u"C"_s, u"0,5"_s, 1}));
    }

    void juntaSoOQueENovo() {
        QCOMPARE(missoes::VerificaDataMaximaPraSensor(chave, inicio), instante(u"2026-03-01 12:58:59"_s));
        QCOMPARE(juntar(amostras(0, 5, 20, 29)), 5);
        QCOMPARE(juntar(amostras(0, 5, 20, 59)), 0); // the same minutes: the seconds fall
        m_instalacao->executar(u"UPDATE DS1921 SET flag = 'porta aberta' WHERE Data = '2026-03-02 09:10:00'"_s);
        QCOMPARE(juntar(amostras(0, 8)), 3);
        // The button has wrapped: what it no longer holds stays, and so does a note.
        QCOMPARE(juntar(amostras(6, 8)), 6);
        QCOMPARE(um(u"SELECT COUNT(DISTINCT Data) FROM DS1921"_s).toInt(), 14);
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(), 14);
        QCOMPARE(um(u"SELECT Data FROM DS1921 WHERE flag <> ''"_s).toString(), u"2026-03-02 09:10:00"_s);
        // Another mission of the same button begins anew.
        ChaveMissao outra = chave;
        outra.Nmissao = u"0002"_s;
        QCOMPARE(juntar(amostras(0, 2), outra), 2);
    }

    void alarmes() {
        std::vector<missoes::Amostra> lista;
        for (const double temperatura : {24.999, 25.0, 10.0, 10.001, -0.125})
            lista.push_back({inicio.addSecs(60 * qint64(lista.size())), temperatura});
        juntar(lista);
        QCOMPARE(um(u"SELECT GROUP_CONCAT(Temperatura || ' ' || Alarm, ', ') FROM DS1921"_s).toString(),
                 u"24.999 FALSE, 25 TRUE, 10 TRUE, 10.001 FALSE, -0.125 TRUE"_s);
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
        // All or nothing.
        m_instalacao->executar(
            u"CREATE TRIGGER guarda BEFORE DELETE ON DS1921head BEGIN SELECT RAISE(ABORT, 'não'); END"_s);
        QVERIFY_THROWS_EXCEPTION(std::exception, missoes::EliminarMissao(chave));
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(), 15);
        m_instalacao->executar(u"DROP TRIGGER guarda"_s);
        missoes::EliminarMissao(chave);
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921"_s).toInt(), 12);
        QCOMPARE(um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), 4);
        QVERIFY(!missoes::temAmostras(chave));
        for (int i = 1; i < chaves.size(); ++i)
            QVERIFY(missoes::temAmostras(chaves[i]));
    }

    void atraso() {
        const std::pair<QString, int> casos[] = {
            {u"2026-03-02 08:00:00"_s, 0},     {u"2026-03-02 09:00:59"_s, 0},     {u"2026-03-02 09:01:00"_s, 1},
            {u"2026-04-12 09:00:00"_s, 59040}, {u"2026-04-12 09:01:00"_s, 59040},
        };
        for (const auto &[comeca, minutos] : casos)
            QCOMPARE(prazos1921::minutosAte(inicio.addSecs(45), instante(comeca)), minutos);
    }

    // Runs are written as their first and last sample; A is above, B below.
    void sequencias() {
        const std::pair<QList<double>, QString> casos[] = {
            {{20, 21, 22}, {}},       {{25, 20, 26}, u"A0-0 A2-2"_s},      {{20, 25, 25}, u"A1-2"_s}, // up to the last
            {{10, 9, 11}, u"B0-1"_s}, {{25, 10, 25}, u"A0-0 B1-1 A2-2"_s}, {{30, 5}, u"A0-0 B1-1"_s},
        };
        for (const auto &[temperaturas, esperadas] : casos) {
            QStringList achadas;
            SequenciasAlarme s(25, 10, [&](const SequenciasAlarme::Sequencia &q) {
                achadas.append(u"%1%2-%3"_s.arg(q.alta ? u"A"_s : u"B"_s)
                                   .arg(inicio.secsTo(q.primeira) / 60)
                                   .arg(inicio.secsTo(q.ultima) / 60));
            });
            for (int i = 0; i < temperaturas.size(); ++i)
                s.juntar(inicio.addSecs(60 * i), temperaturas[i]);
            s.fechar();
            QCOMPARE(achadas.join(u' '), esperadas);
        }
    }

private:
    QVariant um(const QString &sql) { return m_instalacao->linha(sql).value(0); }

    std::unique_ptr<Instalacao> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_missoes)
#include "tst_missoes.moc"
