#include "core/falha.h"
#include "data/criarBD.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "tests/apoio/instalacao.h"

#include <QTest>

#include <optional>

class TstInsercao : public QObject {
    Q_OBJECT
    std::optional<Instalacao> m_instalacao;

private Q_SLOTS:
    void init() { m_instalacao.emplace(); }
    void cleanup() { m_instalacao.reset(); }

    void guardaCadaTipoComoE() {
        Insercao i(cnBD(), u"Temperaturas"_s, {u"Data"_s, u"Sensor"_s, u"Temperatura"_s, u"Observacoes"_s, u"flag"_s});
        i.texto(0, u"2025-01-02 03:04:05"_s);
        i.utf8(1, "S'1", 3);
        i.real(2, 21.5);
        i.nulo(3);
        i.texto(4, u"Nota d'água"_s);
        i.gravar();
        i.utf8(2, "ND", 2); // the others stay as they were set
        i.gravar();
        i.inteiro(2, 7);
        i.gravar();
        QCOMPARE(m_instalacao->linha(
                     u"SELECT Data, Sensor, Temperatura, Observacoes, flag FROM Temperaturas ORDER BY rowid"_s),
                 (QVariantList{u"2025-01-02 03:04:05"_s, u"S'1"_s, u"21.5"_s, QVariant(), u"Nota d'água"_s}));
        QCOMPARE(
            m_instalacao->linha(u"SELECT group_concat(typeof(Temperatura)), count(DISTINCT flag) FROM (SELECT * FROM "
                                "Temperaturas ORDER BY rowid)"_s),
            (QVariantList{u"real,text,integer"_s, u"1"_s}));
    }

    void falhasNaoParamOResto() {
        QVERIFY_THROWS_EXCEPTION(Falha, Insercao(cnBD(), u"NaoHa"_s, {u"Data"_s}));
        QVERIFY_THROWS_EXCEPTION(Falha, Insercao(cnBD(), u"Grupos"_s, {u"NaoHa"_s}));
        Insercao i(cnBD(), u"Grupos"_s, {u"codGrupo"_s, u"Descricao"_s});
        i.inteiro(0, 1);
        i.texto(1, u"Frio"_s);
        i.gravar();
        QVERIFY_THROWS_EXCEPTION(Falha, i.gravar()); // the key again
        i.inteiro(0, 2);
        i.gravar();
        QCOMPARE(m_instalacao->linha(u"SELECT count(*) FROM Grupos"_s), QVariantList{u"2"_s});
    }

    void desfazSeComATransaccao() {
        {
            Transaccao t(cnBD());
            Insercao i(cnBD(), u"Grupos"_s, {u"codGrupo"_s});
            for (int n = 0; n < 5; ++n) {
                i.inteiro(0, n);
                i.gravar();
            }
        }
        QCOMPARE(m_instalacao->linha(u"SELECT count(*) FROM Grupos"_s), QVariantList{u"0"_s});
    }

    void criarBDNaoToca() {
        const QString caminho = m_instalacao->ficheiro(u"outra.mdb"_s);
        criarBD(caminho);
        const QByteArray antes = Instalacao::lerFicheiro(caminho);
        QVERIFY(!antes.isEmpty());
        QVERIFY_THROWS_EXCEPTION(Falha, criarBD(caminho));
        QVERIFY_THROWS_EXCEPTION(Falha, criarBD(m_instalacao->ficheiro(u"nada/outra.mdb"_s)));
        QCOMPARE(Instalacao::lerFicheiro(caminho), antes);
        Ligacao bd;
        bd.abrir(caminho);
        QVERIFY(bd.consultar(u"SELECT 1 FROM MaskListaAlarmes"_s).colunas() == 1);
    }
};

QTEST_GUILESS_MAIN(TstInsercao)
#include "tst_insercao.moc"
