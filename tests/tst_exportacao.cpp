#include "core/datas.h"
#include "tests/apoio/discoCheio.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/ouro.h"
#include "views/exportacao.h"
#include "views/ilegiveis.h"

#include <cerrno>
#include <cstring>

namespace {
const Intervalo tudo(datas::instanteDe(datas::segundosDe(u"2026-01-01"_s)),
                     datas::instanteDe(datas::segundosDe(u"2026-12-31"_s)));

void preencher(const Instalacao &i) {
    i.leituras(u"Medias"_s, u"S2"_s,
               {{u"2026-03-02 00:00:00"_s, 4, u"8XXX2"_s},
                {u"2026-03-01 23:59:59"_s, u"21,5"_s, u" 30.5 XXX NA "_s},
                {u"2026-03-03 07:05:09"_s, u"ND"_s, QVariant()}});
    i.leituras(u"Medias"_s, u"S1"_s, {{u"2026-03-01 00:00:00"_s, -0.1, u"sem limites"_s}});
    i.executar(u"UPDATE Medias SET NomeSensor = 'Câmara; \"fria\"'"_s);
}
} // namespace

class TesteExportacao : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void bytes_data() {
        const Tabela<QString> caso("ouro");
        caso("pt_PT", u"medias-virgula.csv"_s);
        caso("en_GB", u"medias-ponto.csv"_s);
    }
    void bytes() {
        QFETCH(const QString, ouro);
        Instalacao instalacao(Instalacao::Base::Vazia, QLocale(QString::fromLatin1(QTest::currentDataTag())));
        preencher(instalacao);
        const QString caminho = instalacao.ficheiro(u"saida.csv"_s);
        Instalacao::escreverFicheiro(caminho, QByteArray(5000, 'x')); // what stood there is replaced
        exportacao::escreverCSV({caminho, {u"Medias", u"Temperatura"}, {{u"S2"_s}, {u"S1"_s}}, tudo}, [] {});
        const QByteArray diferenca = diferencaDoOuro(ouro, Instalacao::lerFicheiro(caminho));
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
    }

    // A value that cannot be read leaves no line; the readings of one second stand as they were written.
    void ilegiveis() {
        Instalacao instalacao;
        instalacao.leituras(u"Medias"_s, u"S1"_s,
                            {{u"2026-03-01 00:00:00"_s, 9, u"30XXXcinco"_s},
                             {u"2026-03-01 00:00:00"_s, u"abc"_s},
                             {u"2026-03-01 00:00:00"_s, 5, u"8XXX2"_s},
                             {u"2026-03-01 00:00:00"_s, u"ND"_s}});
        const QString caminho = instalacao.ficheiro(u"saida.csv"_s);
        Ilegiveis ilegiveis;
        exportacao::escreverCSV({caminho, {u"Medias", u"Temperatura"}, {{u"S1"_s}}, tudo, nullptr, &ilegiveis}, [] {});
        QStringList linhas = QString::fromUtf8(Instalacao::lerFicheiro(caminho)).split(u"\r\n"_s);
        for (QString &linha : linhas)
            linha = linha.section(u';', 3);
        QCOMPARE(linhas, QStringList({u"9;30;NA"_s, u"5;8;2"_s, u"ND;NA;NA"_s, QString()}));
        instalacao.erros.esperar(u"de fora: 2. O primeiro: tabela Medias, sensor S1, data 2026-03-01 00:00:00, "
                                 "\"30XXXcinco\""_s);
        ilegiveis.relatar("ExportarCSV");
    }

    void semSensores() {
        Instalacao instalacao;
        const QString caminho = instalacao.ficheiro(u"vazio.csv"_s);
        QCOMPARE(exportacao::escreverCSV({caminho, {u"Medias", u"Temperatura"}, {}, tudo}, [] {}), 0);
        QVERIFY(!QFile::exists(caminho));
    }

    // What stood there stays, whole, and the failure says why.
    void discoCheio() {
        Instalacao instalacao;
        QList<double> muitas(40000, 21.5);
        instalacao.leituras(u"Medias"_s, u"S1"_s, u"2026-01-02 00:00:00"_s, 1, muitas);
        const QString caminho = instalacao.ficheiro(u"cheio.csv"_s);
        Instalacao::escreverFicheiro(caminho, "velho");
        QString descricao;
        try {
            const DiscoCheio cheio(600'000);
            exportacao::escreverCSV({caminho, {u"Medias", u"Temperatura"}, {{u"S1"_s}}, tudo}, [] {});
        } catch (const Falha &f) {
            descricao = f.descricao();
        }
        QCOMPARE(Instalacao::lerFicheiro(caminho), "velho");
        QCOMPARE(descricao, u"Não é possível escrever \"%1\": %2. O ficheiro que lá estivesse ficou como estava."_s.arg(
                                caminho, QString::fromLocal8Bit(std::strerror(EFBIG))));
    }

    void interrompida() {
        Instalacao instalacao;
        preencher(instalacao);
        const QString caminho = instalacao.ficheiro(u"meia.csv"_s);
        Instalacao::escreverFicheiro(caminho, "velho");
        int linhas = 0;
        QVERIFY_THROWS_EXCEPTION(
            Interrompido, exportacao::escreverCSV({caminho, {u"Medias", u"Temperatura"}, {{u"S2"_s}}, tudo}, [&] {
                if (++linhas == 2)
                    throw Interrompido();
            }));
        QCOMPARE(linhas, 2);
        QCOMPARE(Instalacao::lerFicheiro(caminho), "velho");
    }
};

QTEST_GUILESS_MAIN(TesteExportacao)
#include "tst_exportacao.moc"
