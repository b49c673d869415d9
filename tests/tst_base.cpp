#include "core/falha.h"
#include "data/esquema.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <sys/stat.h>

using Base = Instalacao::Base;

class tst_base : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void naoAbre_data();
    void naoAbre();
    void permissoes_data();
    void permissoes();
    void leituraSemCadeadoSegueQuemEscreve();
    void bloqueadaPorOutro();
    void leitorAoLadoDoEscritor();
    void examinadaComOutraAberta_data();
    void examinadaComOutraAberta();
    void escritorMortoAMeio();
    void danificada();
    void abreEFecha();
    void cursorSobreviveAoFecho();
};

namespace {

QByteArray comVersao(QByteArray bytes, char versao) {
    bytes[63] = versao;
    return bytes;
}

} // namespace

void tst_base::naoAbre_data() {
    QTest::addColumn<QByteArray>("bytes"); // null: no file
    QTest::addColumn<int>("numero");
    QTest::addColumn<QString>("descricao");
    Instalacao inst(Base::Nenhuma);
    inst.criarBase(inst.caminhoBD());
    const QByteArray boa = Instalacao::lerFicheiro(inst.caminhoBD());
    const int recusado = erros::falhaDoFicheiro;
    QTest::newRow("missing") << QByteArray() << erros::falhaGeralBD << u"Não existe"_s;
    QTest::newRow("zero bytes") << QByteArray("") << recusado << u"está vazio"_s;
    QTest::newRow("one byte") << boa.left(1) << recusado << u"não é uma base de dados"_s;
    QTest::newRow("shorter than a header") << boa.left(99) << recusado << u"não é uma base de dados"_s;
    QTest::newRow("header only") << boa.left(100) << recusado << u"truncado"_s;
    QTest::newRow("half") << boa.left(boa.size() / 2) << recusado << u"truncado"_s;
    QTest::newRow("one byte short") << boa.chopped(1) << recusado << u"truncado"_s;
    QTest::newRow("text") << QByteArray(5000, 'x') << recusado << u"não é uma base de dados"_s;
    QTest::newRow("the old engine") << QByteArray("\0\1\0\0Standard Jet DB\0", 20) + QByteArray(4096, '\0') << recusado
                                    << u"motor de base de dados antigo"_s;
    QTest::newRow("its successor") << QByteArray("\0\1\0\0Standard ACE DB\0", 20) + QByteArray(4096, '\0') << recusado
                                   << u"motor de base de dados antigo"_s;
    QTest::newRow("newer schema") << comVersao(boa, versaoDoEsquema + 1) << recusado << u"versão mais recente"_s;
}

void tst_base::naoAbre() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, numero);
    QFETCH(QString, descricao);
    Instalacao inst(Base::Nenhuma);
    const QString caminho = inst.caminhoBD();
    if (!bytes.isNull())
        Instalacao::escreverFicheiro(caminho, bytes);
    Ligacao bd;
    const Resultado r = falhaDe([&] { bd.abrir(caminho); });
    QCOMPARE(r.numero, numero);
    QVERIFY2(r.descricao.contains(descricao) && r.descricao.contains(caminho), qUtf8Printable(r.descricao));
    QVERIFY(!bd.aberta());
    QCOMPARE(Instalacao::lerFicheiro(caminho), bytes); // neither changed nor created
    const QStringList ficou = QDir(inst.ficheiro(u"BD"_s)).entryList(QDir::Files);
    QCOMPARE(ficou, bytes.isNull() ? QStringList() : QStringList{u"Kelvark.mdb"_s});
    // The same object opens a good one afterwards.
    inst.criarBase(inst.ficheiro(u"boa"_s));
    bd.abrir(inst.ficheiro(u"boa"_s));
    QCOMPARE(contar(bd, u"Sensores"_s), 0);
    QVERIFY(falhaDe([&] { Ligacao().abrir(inst.pastaINI()); }).descricao.contains(u"é uma pasta"_s));
}

void tst_base::permissoes_data() {
    QTest::addColumn<int>("pasta");
    QTest::addColumn<int>("ficheiro");
    QTest::addColumn<QByteArray>("abertura"); // what a user without privileges gets on opening
    QTest::addColumn<QByteArray>("escrita");  // and on writing
    QTest::newRow("all") << 0777 << 0666 << QByteArray("rw 1") << QByteArray("written");
    QTest::newRow("read-only file") << 0777 << 0444 << QByteArray("ro 1") << QByteArray("só pode ser lida");
    QTest::newRow("read-only folder") << 0555 << 0666 << QByteArray("ro 1") << QByteArray("só pode ser lida");
    QTest::newRow("read-only both") << 0555 << 0444 << QByteArray("ro 1") << QByteArray("só pode ser lida");
    QTest::newRow("unreadable file") << 0777 << 0000 << QByteArray("Não é possível ler") << QByteArray();
    QTest::newRow("closed folder") << 0000 << 0666 << QByteArray("Não existe") << QByteArray();
}

void tst_base::permissoes() {
    QFETCH(int, pasta);
    QFETCH(int, ficheiro);
    QFETCH(QByteArray, abertura);
    QFETCH(QByteArray, escrita);
    Instalacao inst;
    inst.sensor({u"S1"_s, u"Um"_s});
    inst.reiniciar(); // nobody has the file open
    const QByteArray nome = QFile::encodeName(inst.caminhoBD());
    const QByteArray nomePasta = QFile::encodeName(inst.ficheiro(u"BD"_s));
    ::chmod(QFile::encodeName(inst.ficheiro(u"."_s)).constData(), 0755);
    ::chmod(nome.constData(), mode_t(ficheiro));
    ::chmod(nomePasta.constData(), mode_t(pasta));
    Filho outro(
        [&]() -> QByteArray {
            Ligacao bd;
            QByteArray r;
            const Resultado abrir = falhaDe([&] {
                bd.abrir(inst.caminhoBD());
                r = (bd.soLeitura() ? "ro " : "rw ") + QByteArray::number(contar(bd, u"Sensores"_s));
            });
            if (abrir.numero != 0)
                return abrir.descricao.toUtf8();
            const Resultado escrever = falhaDe([&] { bd.executar(u"UPDATE Sensores SET Descricao = 'Dois'"_s); });
            return r + '|' + (escrever.numero == 0 ? QByteArray("written") : escrever.descricao.toUtf8());
        },
        Filho::Quem::Ninguem);
    const QByteArrayList r = outro.esperar().split('|');
    ::chmod(nomePasta.constData(), 0755);
    ::chmod(nome.constData(), 0644);
    QVERIFY2(r.value(0).contains(abertura), r.value(0).constData());
    QVERIFY2(r.value(1).contains(escrita), r.value(1).constData());
    const bool escreveu = escrita == "written";
    QCOMPARE(inst.linha(u"SELECT Descricao FROM Sensores"_s), QVariantList{escreveu ? u"Dois"_s : u"Um"_s});
}

// A user who may only read sees what the capture service writes later all the same.
void tst_base::leituraSemCadeadoSegueQuemEscreve() {
    Instalacao inst;
    inst.reiniciar();
    const QByteArray pasta = QFile::encodeName(inst.ficheiro(u"BD"_s));
    ::chmod(QFile::encodeName(inst.ficheiro(u"."_s)).constData(), 0755);
    ::chmod(pasta.constData(), 0555);
    const QString sinal = inst.ficheiro(u"sinal"_s);
    Filho leitor(
        [&]() -> QByteArray {
            Ligacao bd;
            bd.abrir(inst.caminhoBD());
            QByteArray r = QByteArray::number(contar(bd, u"Sensores"_s));
            for (int i = 0; i < 500 && !QFile::exists(sinal); ++i)
                QTest::qSleep(10);
            return r + ' ' + QByteArray::number(contar(bd, u"Sensores"_s));
        },
        Filho::Quem::Ninguem);
    QTest::qSleep(100);
    ::chmod(pasta.constData(), 0755);
    Ligacao servico;
    servico.abrir(inst.caminhoBD());
    servico.executar(u"INSERT INTO Sensores (SensorID) VALUES ('S1')"_s);
    ::chmod(QFile::encodeName(inst.caminhoBD() + u"-shm"_s).constData(), 0644);
    Instalacao::escreverFicheiro(sinal, "x");
    QCOMPARE(leitor.esperar(), "0 1");
}

void tst_base::bloqueadaPorOutro() {
    Instalacao inst;
    cnBD().definirEspera(150);
    Ligacao outro;
    outro.abrir(inst.caminhoBD());
    auto alheia = std::make_unique<Transaccao>(outro);
    QElapsedTimer relogio;
    relogio.start();
    const Resultado r = falhaDe([] { const Transaccao t(cnBD()); });
    QVERIFY2(r.descricao.contains(u"bloqueada por outro programa"_s), qUtf8Printable(r.descricao));
    QVERIFY(relogio.elapsed() >= 140);
    QCOMPARE(contar(cnBD(), u"Sensores"_s), 0); // reading is not held up
    QVERIFY(falhaDe([] { cnBD().executar(u"DELETE FROM Sensores"_s); }).numero != 0);
    alheia.reset();
    cnBD().executar(u"DELETE FROM Sensores"_s);

    // One that another program keeps to itself alone is not opened, and it is said why.
    cnBD().fechar();
    outro.executar(u"PRAGMA locking_mode = EXCLUSIVE"_s);
    outro.executar(u"INSERT INTO Grupos (codGrupo) VALUES (1)"_s);
    const Resultado so = falhaDe([&] { ligacaoPartilhada().abrir(inst.caminhoBD()); });
    QVERIFY2(so.descricao.contains(u"bloqueada por outro programa"_s), qUtf8Printable(so.descricao));
    outro.fechar();
    ligacaoPartilhada().abrir(inst.caminhoBD());
}

void tst_base::leitorAoLadoDoEscritor() {
    Instalacao inst;
    constexpr int linhas = 400;
    Filho servico([&] {
        Ligacao bd;
        bd.abrir(inst.caminhoBD());
        const Resultado r = falhaDe([&] {
            for (int i = 0; i < linhas; ++i)
                bd.executar(u"INSERT INTO Medias (Data, Sensor, Temperatura) VALUES (?, 'S1', ?)"_s,
                            {QDateTime(QDate(2024, 1, 1), QTime(), Qt::UTC).addSecs(i), i});
        });
        return r.descricao.toUtf8();
    });
    int vistas = 0;
    for (int volta = 0; vistas < linhas && volta < 100000; ++volta) {
        // One query sees one state, however long its rows are walked.
        Recordset rs = cnBD().consultar(u"SELECT Temperatura FROM Medias ORDER BY Data"_s);
        int n = 0;
        for (; rs.avancar(); ++n)
            QCOMPARE(rs.inteiro(0), n);
        QVERIFY(n >= vistas);
        vistas = n;
        cnBD().executar(u"UPDATE Medias SET flag = 'nota' WHERE Data = ?"_s, {u"2024-01-01 00:00:00"_s});
    }
    QCOMPARE(vistas, linhas);
    QCOMPARE(servico.esperar(), "");
}

void tst_base::examinadaComOutraAberta_data() {
    QTest::addColumn<bool>("reaberta");
    QTest::newRow("a second look at the file") << false;
    QTest::newRow("opened again while a cursor holds the first one") << true;
}

// Looking at the file must leave the locks of an open connection alone: a program that comes and goes would otherwise
// take the log with it, and what is written afterwards would be lost.
void tst_base::examinadaComOutraAberta() {
    QFETCH(const bool, reaberta);
    Instalacao inst(Base::Nenhuma);
    inst.criarBase(inst.caminhoBD());
    const auto sinal = [&](int n) { return inst.ficheiro(u"sinal%1"_s.arg(n)); };
    Filho outro([&] { // begun before there is a connection whose locks it could take for its own
        QByteArrayList contados;
        for (const int n : {1, 3}) {
            while (!QFile::exists(sinal(n)))
                QTest::qSleep(5);
            Ligacao bd;
            bd.abrir(inst.caminhoBD());
            contados += QByteArray::number(contar(bd, u"Sensores"_s));
            bd.fechar();
            Instalacao::escreverFicheiro(sinal(n + 1), "x");
        }
        return contados.join(' ');
    });
    inst.abrirBase();
    inst.sensores({{u"A1"_s, u"Um"_s}, {u"B2"_s, u"Dois"_s}});
    Recordset aMeio = cnBD().consultar(u"SELECT SensorID FROM Sensores"_s);
    QVERIFY(aMeio.avancar());
    if (reaberta) {
        cnBD().fechar();
        ligacaoPartilhada().abrir(inst.caminhoBD());
    } else {
        Ligacao().abrir(inst.caminhoBD());
    }
    QVERIFY(aMeio.avancar());
    aMeio.fechar();
    Instalacao::escreverFicheiro(sinal(1), "x");
    QTRY_VERIFY(QFile::exists(sinal(2)));
    cnBD().executar(u"INSERT INTO Sensores (SensorID) VALUES ('C3')"_s);
    Instalacao::escreverFicheiro(sinal(3), "x");
    QCOMPARE(outro.esperar(), "2 3");
}

void tst_base::escritorMortoAMeio() {
    Instalacao inst;
    inst.leituras(u"Medias"_s, u"S1"_s, u"2024-01-01 00:00:00"_s, 60, QList<double>(100, 1.0));
    for (int vez = 0; vez < 5; ++vez) {
        const QString sinal = inst.ficheiro(u"sinal%1"_s.arg(vez));
        Filho escritor([&] {
            Ligacao bd;
            bd.abrir(inst.caminhoBD());
            const Transaccao t(bd);
            bd.executar(u"PRAGMA cache_size = 1"_s); // so that pages go to the log before the end
            bd.executar(u"DELETE FROM Medias"_s);
            for (int i = 0; i < 3000; ++i)
                bd.executar(u"INSERT INTO Medias (Data, Sensor, Temperatura) VALUES ('2025', 'S2', ?)"_s, {i});
            Instalacao::escreverFicheiro(sinal, "x");
            for (;;)
                QTest::qSleep(1000);
            return QByteArray();
        });
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(sinal), 20000);
        escritor.matar();
        QCOMPARE(inst.linha(u"SELECT COUNT(*), SUM(Temperatura) FROM Medias"_s), QVariantList({u"100"_s, u"100"_s}));
        cnBD().executar(u"UPDATE Medias SET flag = 'x'"_s); // and the lock went with it
    }
}

void tst_base::danificada() {
    Instalacao inst;
    inst.leituras(u"Medias"_s, u"S1"_s, u"2024-01-01 00:00:00"_s, 60, QList<double>(3000, 1.5));
    inst.reiniciar();
    QByteArray bytes = Instalacao::lerFicheiro(inst.caminhoBD());
    const int pagina = 4096;
    for (qsizetype p = bytes.size() / pagina / 2; p < bytes.size() / pagina; ++p)
        bytes.replace(p * pagina, 64, QByteArray(64, '\xA5'));
    Instalacao::escreverFicheiro(inst.caminhoBD(), bytes);
    Ligacao bd;
    bd.abrir(inst.caminhoBD()); // opening reads the header only, whatever the size
    const Resultado r = falhaDe([&] {
        Recordset rs = bd.consultar(u"SELECT * FROM Medias"_s);
        while (rs.avancar()) {
        }
    });
    QVERIFY2(r.descricao.contains(u"está danificada"_s) && r.descricao.contains(inst.caminhoBD()) &&
                 r.descricao.contains(u" Exame: "_s),
             qUtf8Printable(r.descricao));
    QCOMPARE(Instalacao::lerFicheiro(inst.caminhoBD()), bytes);
}

void tst_base::abreEFecha() {
    Instalacao inst;
    QCOMPARE(falhaDe([&] { cnBD().abrir(inst.caminhoBD()); }).numero, erros::objectoAberto);
    Ligacao &bd = cnBD();
    bd.fechar();
    QCOMPARE(falhaDe([&] { bd.fechar(); }).numero, erros::objectoFechado);
    QCOMPARE(falhaDe([&] { bd.consultar(u"SELECT 1"_s); }).numero, erros::objectoFechado);
    QCOMPARE(falhaDe([&] { bd.executar(u"SELECT 1"_s); }).numero, erros::objectoFechado);
    QCOMPARE(falhaDe([&] { bd.executarGuiao(u"SELECT 1"_s); }).numero, erros::objectoFechado);
    QCOMPARE(falhaDe([&] { const Transaccao t(bd); }).numero, erros::objectoFechado);
    QCOMPARE(falhaDe([] { cnBD(); }).numero, erros::objectoFechado);
    for (const QString &nome : {u"com espaço %41?#.mdb"_s, u"ção 'x'.mdb"_s}) {
        inst.criarBase(inst.ficheiro(nome));
        bd.abrir(inst.ficheiro(nome));
        QCOMPARE(contar(bd, u"Grupos"_s), 0);
        bd.fechar();
    }
}

void tst_base::cursorSobreviveAoFecho() {
    Instalacao inst;
    inst.leituras(u"Medias"_s, u"S1"_s, u"2024-01-01 00:00:00"_s, 60, {1, 2, 3});
    Recordset rs = cnBD().consultar(u"SELECT Temperatura FROM Medias ORDER BY Data"_s);
    QVERIFY(rs.avancar());
    cnBD().fechar(); // the path is changed in the middle of a load
    inst.criarBase(inst.ficheiro(u"outra"_s));
    ligacaoPartilhada().abrir(inst.ficheiro(u"outra"_s));
    QVERIFY(rs.avancar());
    QCOMPARE(rs.inteiro(0), 2);
    QCOMPARE(contar(cnBD(), u"Medias"_s), 0);
    Recordset movido = std::move(rs);
    QVERIFY(movido.avancar());
    QVERIFY(!movido.avancar());
}

QTEST_GUILESS_MAIN(tst_base)
#include "tst_base.moc"
