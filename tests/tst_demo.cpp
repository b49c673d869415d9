#include "core/datas.h"
#include "core/modDoubleTratamento.h"
#include "data/modMain.h"
#include "demo/captura.h"
#include "demo/gerador.h"
#include "demo/historia.h"
#include "demo/unidadesVirtuais.h"
#include "platform/onewire/DS1921.h"
#include "simulator/botao/transporteVirtual.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <cmath>

using namespace demonstracao;

namespace {

const QDateTime fim(QDate(2025, 7, 2), QTime(10, 5), Qt::UTC);

Pedido pedido(qint64 linhas, quint64 semente = 1) {
    return {linhas, semente, fim, {}};
}

QStringList coluna(Ligacao &bd, const QString &sql) {
    QStringList valores;
    Recordset rs = bd.consultar(sql);
    while (rs.avancar())
        valores.append(rs.texto(0));
    return valores;
}

const QString sqlTabelas = u"SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY 1"_s;

} // namespace

class TstDemo : public QObject {
    Q_OBJECT

    QTemporaryDir m_pasta;
    std::unique_ptr<Instalacao> m_instalacao;
    Ligacao m_bd; // one base for all that only look

    QString caminho(const QString &nome) const { return m_pasta.filePath(nome); }

private Q_SLOTS:
    void initTestCase() {
        m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma);
        const qint64 linhas = fazerBase(caminho(u"base.mdb"_s), pedido(300000)).linhas;
        QVERIFY2(std::abs(double(linhas) / 300000 - 1) < 0.15, qPrintable(QString::number(linhas)));
        m_bd.abrir(caminho(u"base.mdb"_s));
        qint64 contadas = 0;
        for (const QString &tabela : coluna(m_bd, u"SELECT name FROM sqlite_master WHERE type = 'table'"_s)) {
            const int n = contar(m_bd, tabela);
            QVERIFY2(n > 0, qPrintable(tabela));
            contadas += n;
        }
        QCOMPARE(linhas, contadas);
    }
    void cleanupTestCase() {
        m_bd.fechar();
        m_instalacao.reset();
    }

    void esquemaEIntegridade() {
        Ligacao vazia;
        m_instalacao->criarBase(caminho(u"vazia.mdb"_s));
        vazia.abrir(caminho(u"vazia.mdb"_s));
        const QString sql = u"SELECT sql FROM sqlite_master ORDER BY type, name"_s;
        QCOMPARE(coluna(m_bd, sql), coluna(vazia, sql)); // the indices too
        QCOMPARE(coluna(m_bd, u"PRAGMA journal_mode"_s), QStringList{u"wal"_s});
        QCOMPARE(coluna(m_bd, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
        // Whoever works with it asks nothing of equipment that exists.
        QCOMPARE(coluna(m_bd,
                        u"SELECT i FROM (SELECT PoseidonIP AS i FROM Poseidons UNION SELECT substr(PoseidonIP, 2) "
                        "FROM Sensores UNION SELECT IP FROM MaskListaAlarmes) WHERE i NOT LIKE '127.%'"_s),
                 QStringList());
    }

    void mesmoPedidoDaOMesmo() {
        const auto bytes = [&](const QString &nome, quint64 semente) {
            (void)fazerBase(caminho(nome), pedido(30000, semente));
            return Instalacao::lerFicheiro(caminho(nome));
        };
        const QByteArray a = bytes(u"a.mdb"_s, 1);
        QVERIFY(!a.isEmpty() && a == bytes(u"b.mdb"_s, 1));
        QVERIFY(a != bytes(u"c.mdb"_s, 2));
    }

    void naoDestroiNemDeixaMeias() {
        Instalacao::escreverFicheiro(caminho(u"ocupado.mdb"_s), "meu");
        QVERIFY_THROWS_EXCEPTION(Falha, (void)fazerBase(caminho(u"ocupado.mdb"_s), pedido(30000)));
        QCOMPARE(Instalacao::lerFicheiro(caminho(u"ocupado.mdb"_s)), "meu");
        QVERIFY_THROWS_EXCEPTION(Falha, (void)fazerBase(caminho(u"nada/base.mdb"_s), pedido(30000)));
        Pedido interrompido = pedido(30000);
        interrompido.aoAvancar = [](const QString &oque) {
            if (oque == u"Pressao")
                throw Falha(erros::chamadaInvalida, u"basta"_s);
        };
        QVERIFY_THROWS_EXCEPTION(Falha, (void)fazerBase(caminho(u"meio.mdb"_s), interrompido));
        QVERIFY(QDir(m_pasta.path()).entryList({u"meio*"_s, u"*.novo*"_s}).isEmpty());
    }

    void oProgramaAbreAInstalacao() {
        Instalacao outra(Instalacao::Base::Nenhuma);
        const QString pasta = outra.ficheiro(u"demonstração nova"_s);
        (void)fazerInstalacao(pasta, pedido(30000, 2));
        (void)fazerInstalacao(pasta, pedido(30000)); // once more, over the first
        estado().PastaPrograma = pasta;
        QVERIFY(modMain::carregaGlobaisBD());
        QCOMPARE(contar(cnBD(), u"Sensores"_s), contar(m_bd, u"Sensores"_s));
        const auto definicao = [](const QString &seccao, const QString &chave, const QString &ficheiro = u"Vistrel"_s) {
            return modINI::GetSetting(ficheiro, seccao, chave);
        };
        QCOMPARE(definicao(u"Lingua"_s, u"3"_s), u"Čeština"_s);
        QCOMPARE(definicao(u"Lingua"_s, u"L"_s + definicao(u"Lingua"_s, u"ACT"_s)), u"PT"_s);
        for (const QString &endereco : definicao(u"D2251"_s, u"Pesquisa"_s).split(u' '))
            QVERIFY2(endereco.startsWith(u"127."_s), qPrintable(endereco));
        QVERIFY(QDir(definicao(u"JPG"_s, u"MAIN"_s)).exists());

        simulador::oferecerGavetas();
        const simulador::Gaveta gaveta(pasta + u"/gaveta"_s);
        QVERIFY(gaveta.nomes().size() >= 6);
        DS1921 controlo;
        controlo.PortaTipo = definicao(u"LIAGACAOHARDWARE"_s, u"PortType"_s, u"Kelvark"_s).toShort();
        controlo.PortaNumero = definicao(u"LIAGACAOHARDWARE"_s, u"PortNum"_s, u"Kelvark"_s).toShort();
        QStringList tipos;
        int emMissao = 0;
        for (const QString &nome : gaveta.nomes()) {
            if (nome == u"adaptador")
                continue;
            QVERIFY(gaveta.por({u"adaptador"_s, nome}));
            controlo.ROMID.clear();
            QCOMPARE(controlo.ActualizarEstado(), qint16(1));
            tipos.append(controlo.TipoRegistador);
            std::vector<DS1921::Amostra> amostras;
            const qint16 n = controlo.ContarAmostras(amostras);
            emMissao += controlo.MissaoEmCurso;
            QCOMPARE(n > 0, controlo.MissaoEmCurso);
        }
        QVERIFY(tipos.contains(u"G"_s) && tipos.contains(u"H"_s) && tipos.contains(u"Z"_s));
        QCOMPARE(emMissao, 4);
    }

    void companheiroAcabaQuandoMandado() {
        const QString base = caminho(u"companheiro.mdb"_s);
        (void)fazerBase(base, pedido(30000));
        QProcess processo;
        processo.start(QStringLiteral(KELVARK_CAPTURA), {u"--intervalo"_s, u"5"_s, base});
        QVERIFY(processo.waitForStarted());
        Ligacao leitor;
        leitor.abrir(base);
        const QString recentes = u"Temperaturas WHERE Data > '%1'"_s.arg(datas::textoBD(fim));
        QTRY_VERIFY_WITH_TIMEOUT(contar(leitor, recentes) >= 10, 20000);
        processo.terminate();
        QVERIFY(processo.waitForFinished(10000));
        QCOMPARE(processo.exitStatus(), QProcess::NormalExit);
        QCOMPARE(processo.exitCode(), 0);
        QVERIFY(processo.readAllStandardOutput().contains(", 0 falhas"));
        QCOMPARE(coluna(leitor, u"PRAGMA integrity_check"_s), QStringList{u"ok"_s});
    }

    void companheiroRecusaBaseEmFalta() {
        QProcess processo;
        processo.start(QStringLiteral(KELVARK_CAPTURA), {caminho(u"nao-ha.mdb"_s)});
        QVERIFY(processo.waitForFinished(10000));
        QCOMPARE(processo.exitCode(), 1);
        QVERIFY(processo.readAllStandardError().contains("nao-ha.mdb"));
        QVERIFY(!QFile::exists(caminho(u"nao-ha.mdb"_s)));
    }
};

QTEST_GUILESS_MAIN(TstDemo)
#include "tst_demo.moc"
