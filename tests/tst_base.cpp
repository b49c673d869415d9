#include "data/esquema.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <sys/stat.h>

using Base = Instalacao::Base;

namespace {

void permitir(const QString &caminho, int modo) {
    ::chmod(QFile::encodeName(caminho).constData(), mode_t(modo));
}
void dar(const QString &sinal) {
    Instalacao::escreverFicheiro(sinal, "x");
}
void esperarPor(const QString &sinal) {
    for (int i = 0; i < 4000 && !QFile::exists(sinal); ++i)
        QTest::qSleep(5);
}

} // namespace

class tst_base : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void naoAbre_data() {
        const Tabela<QByteArray, QString> caso("bytes", "descricao"); // null: no file
        Instalacao inst(Base::Nenhuma);
        inst.criarBase(inst.caminhoBD());
        const QByteArray boa = Instalacao::lerFicheiro(inst.caminhoBD());
        caso("missing", {}, u"Não existe"_s);
        caso("zero bytes", "", u"está vazio"_s);
        caso("shorter than a header", boa.left(99), u"não é uma base de dados"_s);
        caso("header only", boa.left(100), u"truncado"_s);
        caso("one byte short", boa.chopped(1), u"truncado"_s);
        caso("text", QByteArray(5000, 'x'), u"não é uma base de dados"_s);
        const QByteArray resto(4096, '\0');
        caso("the old engine", QByteArray("\0\1\0\0Standard Jet DB\0", 20) + resto, u"motor de base de dados antigo"_s);
        caso("its successor", QByteArray("\0\1\0\0Standard ACE DB\0", 20) + resto, u"motor de base de dados antigo"_s);
        caso("newer schema", QByteArray(boa).replace(63, 1, QByteArray(1, versaoDoEsquema + 1)),
             u"versão mais recente"_s);
    }
    void naoAbre() {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, descricao);
        Instalacao inst(Base::Nenhuma);
        const QString caminho = inst.caminhoBD();
        if (!bytes.isNull())
            Instalacao::escreverFicheiro(caminho, bytes);
        Ligacao bd;
        const Resultado r = falhaDe([&] { bd.abrir(caminho); });
        QCOMPARE(r.numero, bytes.isNull() ? erros::falhaGeralBD : erros::falhaDoFicheiro);
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

    void permissoes_data() {
        // What a user without privileges gets on opening, and on writing.
        const Tabela<int, int, QByteArray, QByteArray> caso("pasta", "ficheiro", "abertura", "escrita");
        caso("all", 0777, 0666, "rw 1", "written");
        caso("read-only file", 0777, 0444, "ro 1", "só pode ser lida");
        caso("read-only folder", 0555, 0666, "ro 1", "só pode ser lida");
        caso("unreadable file", 0777, 0000, "Não é possível ler", "");
        caso("closed folder", 0000, 0666, "Não existe", "");
    }
    void permissoes() {
        QFETCH(int, pasta);
        QFETCH(int, ficheiro);
        QFETCH(QByteArray, abertura);
        QFETCH(QByteArray, escrita);
        Instalacao inst;
        inst.sensor({u"S1"_s, u"Um"_s});
        inst.reiniciar(); // nobody has the file open
        permitir(inst.ficheiro(u"."_s), 0755);
        permitir(inst.caminhoBD(), ficheiro);
        permitir(inst.ficheiro(u"BD"_s), pasta);
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
        permitir(inst.ficheiro(u"BD"_s), 0755);
        permitir(inst.caminhoBD(), 0644);
        QVERIFY2(r.value(0).contains(abertura), r.value(0).constData());
        QVERIFY2(r.value(1).contains(escrita), r.value(1).constData());
        QCOMPARE(inst.linha(u"SELECT Descricao FROM Sensores"_s),
                 QVariantList{escrita == "written" ? u"Dois"_s : u"Um"_s});
    }

    // A user who may only read sees what the capture service writes later all the same.
    void leituraSemCadeadoSegueQuemEscreve() {
        Instalacao inst;
        inst.reiniciar();
        permitir(inst.ficheiro(u"."_s), 0755);
        permitir(inst.ficheiro(u"BD"_s), 0555);
        permitir(inst.pastaINI(), 0777);
        const QString sinal = inst.ficheiro(u"sinal"_s);
        Filho leitor(
            [&]() -> QByteArray {
                Ligacao bd;
                bd.abrir(inst.caminhoBD());
                const QByteArray r = QByteArray::number(contar(bd, u"Sensores"_s));
                dar(inst.ficheiro(u"definicoes/lido"_s));
                esperarPor(sinal);
                return r + ' ' + QByteArray::number(contar(bd, u"Sensores"_s));
            },
            Filho::Quem::Ninguem);
        esperarPor(inst.ficheiro(u"definicoes/lido"_s));
        permitir(inst.ficheiro(u"BD"_s), 0755);
        Ligacao servico;
        servico.abrir(inst.caminhoBD());
        servico.executar(u"INSERT INTO Sensores (SensorID) VALUES ('S1')"_s);
        permitir(inst.caminhoBD() + u"-shm"_s, 0644);
        dar(sinal);
        QCOMPARE(leitor.esperar(), "0 1");
    }

    void bloqueadaPorOutro() {
        Instalacao inst;
        cnBD().definirEspera(150);
        Ligacao outro;
        outro.abrir(inst.caminhoBD());
        auto alheia = std::make_unique<Transaccao>(outro);
        QElapsedTimer relogio;
        relogio.start();
        const QString motivo = falhaDe([] { const Transaccao t(cnBD()); }).descricao;
        QVERIFY2(motivo.contains(u"bloqueada por outro programa"_s), qUtf8Printable(motivo));
        QVERIFY(relogio.elapsed() >= 140);
        QCOMPARE(contar(cnBD(), u"Sensores"_s), 0); // reading is not held up
        alheia.reset();
        cnBD().executar(u"DELETE FROM Sensores"_s);

        // One that another program keeps to itself alone is not opened, and it is said why.
        cnBD().fechar();
        outro.executar(u"PRAGMA locking_mode = EXCLUSIVE"_s);
        outro.executar(u"INSERT INTO Grupos (codGrupo) VALUES (1)"_s);
        const QString so = falhaDe([&] { ligacaoPartilhada().abrir(inst.caminhoBD()); }).descricao;
        QVERIFY2(so.contains(u"bloqueada por outro programa"_s), qUtf8Printable(so));
        outro.fechar();
        ligacaoPartilhada().abrir(inst.caminhoBD());
    }

    void examinadaComOutraAberta_data() {
        const Tabela<bool> caso("reaberta");
        caso("a second look at the file", false);
        caso("opened again while a cursor holds the first one", true);
    }
    // Looking at the file must leave the locks of an open connection alone: a program that comes and goes would
    // otherwise take the log with it, and what is written afterwards would be lost.
    void examinadaComOutraAberta() {
        QFETCH(const bool, reaberta);
        Instalacao inst(Base::Nenhuma);
        inst.criarBase(inst.caminhoBD());
        const auto sinal = [&](int n) { return inst.ficheiro(u"sinal%1"_s.arg(n)); };
        Filho outro([&] { // begun before there is a connection whose locks it could take for its own
            QByteArrayList contados;
            for (const int n : {1, 3}) {
                esperarPor(sinal(n));
                Ligacao bd;
                bd.abrir(inst.caminhoBD());
                contados += QByteArray::number(contar(bd, u"Sensores"_s));
                bd.fechar();
                dar(sinal(n + 1));
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
        dar(sinal(1));
        esperarPor(sinal(2));
        cnBD().executar(u"INSERT INTO Sensores (SensorID) VALUES ('C3')"_s);
        dar(sinal(3));
        QCOMPARE(outro.esperar(), "2 3");
    }

    void danificada() {
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
        const QString motivo = falhaDe([&] { bd.executar(u"SELECT * FROM Medias"_s); }).descricao;
        QVERIFY2(motivo.contains(u"está danificada"_s) && motivo.contains(inst.caminhoBD()) &&
                     motivo.contains(u" Exame: "_s),
                 qUtf8Printable(motivo));
        QCOMPARE(Instalacao::lerFicheiro(inst.caminhoBD()), bytes);
    }

    void abreEFecha() {
        Instalacao inst;
        Ligacao &bd = cnBD();
        QCOMPARE(falhaDe([&] { bd.abrir(inst.caminhoBD()); }).numero, erros::objectoAberto);
        bd.fechar();
        QCOMPARE(falhaDe([&] { bd.fechar(); }).numero, erros::objectoFechado);
        QCOMPARE(falhaDe([&] { bd.consultar(u"SELECT 1"_s); }).numero, erros::objectoFechado);
        QCOMPARE(falhaDe([&] { const Transaccao t(bd); }).numero, erros::objectoFechado);
        QCOMPARE(falhaDe([] { cnBD(); }).numero, erros::objectoFechado);
        const QString nome = inst.ficheiro(u"ção 'x' %41?#.mdb"_s);
        inst.criarBase(nome);
        bd.abrir(nome);
        QCOMPARE(contar(bd, u"Grupos"_s), 0);
    }
};

QTEST_GUILESS_MAIN(tst_base)
#include "tst_base.moc"
