#include "core/eventos.h"
#include "core/falha.h"
#include "data/copiaDatada.h"
#include "data/fusaoSensores.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"
#include "tests/falhaDe.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using namespace fusaoSensores;

namespace {

struct TabelaComSensor {
    QString nome;
    QString coluna;
    bool deFora = false;
};

// Found in the database itself, so that a table forgotten in the program's list shows here.
QList<TabelaComSensor> tabelasComSensor() {
    const QStringList deFora = {u"AlarmesPOrv"_s, u"AlarmesPressao"_s, u"Pontoorvalho"_s,   u"PontoorvalhoPull"_s,
                                u"Pressao"_s,     u"PressaoPull"_s,    u"SensUI_Relacoes"_s};
    QList<TabelaComSensor> tabelas;
    Recordset rs = cnBD().consultar(u"SELECT m.name, c.name FROM sqlite_master m, pragma_table_info(m.name) c WHERE "
                                    "m.type = 'table' AND c.name IN ('Sensor', 'SensorID', 'SondaID') ORDER BY 1"_s);
    while (rs.avancar())
        tabelas.append({rs.texto(0), rs.texto(1), deFora.contains(rs.texto(0))});
    return tabelas;
}

// `linhas` rows of a sensor in every table that names sensors (one in the register).
void encher(const QString &sensor, int linhas) {
    Transaccao transaccao(cnBD());
    for (const TabelaComSensor &t : tabelasComSensor())
        cnBD().executar(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?2) "
                        "INSERT INTO %1 (%2) SELECT ?1 FROM n"_s.arg(t.nome, t.coluna),
                        {sensor, t.nome == u"Sensores" ? 1 : linhas});
    transaccao.confirmar();
}

using Contagens = QMap<QString, qint64>;

Contagens contagens(const QString &sensor) {
    Contagens c;
    for (const TabelaComSensor &t : tabelasComSensor()) {
        Recordset rs = cnBD().consultar(u"SELECT COUNT(*) FROM %1 WHERE %2 = ?"_s.arg(t.nome, t.coluna), {sensor});
        rs.avancar();
        c[t.nome] = rs.inteiro(0);
    }
    return c;
}

Contagens esperadas(qint64 mudadas, qint64 deFora, qint64 noRegisto) {
    Contagens c;
    for (const TabelaComSensor &t : tabelasComSensor())
        c[t.nome] = t.nome == u"Sensores" ? noRegisto : t.deFora ? deFora : mudadas;
    return c;
}

QStringList ficheirosAoLado(const Instalacao &inst) {
    QStringList nomes = QDir(inst.ficheiro(u"BD"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    nomes.removeAll(u"Kelvark.mdb"_s);
    nomes.removeAll(u"Kelvark.mdb-wal"_s);
    nomes.removeAll(u"Kelvark.mdb-shm"_s);
    return nomes;
}

QString texto(const QString &sql) {
    Recordset rs = cnBD().consultar(sql);
    return rs.avancar() ? rs.texto(0) : u"(no row)"_s;
}

QString idDaCadeia(int n) {
    return u"S%1"_s.arg(n, 6, 10, QChar(u'0'));
}

// The child of resisteAoFim: merges each sensor of a chain into the next one until it is killed.
int fusoesSemFim(const QString &caminho) {
    QObject dono;
    ligacaoPartilhada().abrir(caminho);
    QFile saida;
    if (!saida.open(stdout, QIODevice::WriteOnly))
        return 1;
    for (int n = texto(u"SELECT MIN(SensorID) FROM Sensores"_s).mid(1).toInt();; ++n) {
        saida.write("i" + QByteArray::number(n) + '\n');
        saida.flush();
        executarAlteracao({idDaCadeia(n), idDaCadeia(n + 1)}, Vigia(&dono));
        saida.write("f" + QByteArray::number(n) + '\n');
        saida.flush();
    }
}

} // namespace

class tst_fusao : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void alteracao_data() {
        // move: rows of A go to `novo`; some: A leaves the tables of the list
        const Tabela<QString, bool, bool, bool> caso("novo", "eliminar", "move", "some");
        caso("nothing", {}, false, false, false);
        caso("merged", u"b'\"; --"_s, false, true, true);
        caso("merged into one that no sensor has", u"X"_s, false, true, true);
        caso("blanks around", u" X "_s, false, true, true);
        caso("removed", {}, true, false, true);
        caso("blank, removed", u"  "_s, true, false, true);
        caso("merged and removed", u"b'\"; --"_s, true, true, true);
        caso("into itself", u"A'1"_s, false, false, false);
        caso("into itself, other case", u"a'1"_s, false, false, false);
        caso("into itself and removed", u"A'1"_s, true, false, true);
    }
    void alteracao() {
        QFETCH(QString, novo);
        QFETCH(bool, eliminar);
        QFETCH(bool, move);
        QFETCH(bool, some);
        const Instalacao inst;
        constexpr int linhas = 2100; // more than two batches
        encher(u"A'1"_s, linhas);
        encher(u"B'\"; --"_s, 3);
        encher(u"C"_s, 2);
        const auto outros = [] { return std::pair(contagens(u"B'\"; --"_s), contagens(u"C"_s)); };
        const auto antes = outros();
        const qint64 alvoAntes = contagens(novo.trimmed())[u"Medias"_s];

        executarAlteracao({u"A'1"_s, novo, eliminar}, m_vigia);

        // The tables of pressure, dew point and scales keep the old identifier.
        QCOMPARE(contagens(u"A'1"_s), some ? esperadas(0, linhas, 0) : esperadas(linhas, linhas, 1));
        if (move) {
            const bool existia = alvoAntes > 0;
            QCOMPARE(contagens(novo.trimmed()), esperadas(alvoAntes + linhas, alvoAntes, existia ? 1 : 0));
            QCOMPARE(contagens(u"C"_s), antes.second);
        } else {
            QVERIFY(outros() == antes);
        }
    }

    void fusaoGuardaOsValores() {
        const Instalacao inst;
        inst.sensores({{u"A"_s, u"Velho"_s}, {u"B"_s, u"Novo"_s}});
        inst.leituras(u"Medias"_s, u"A"_s, {{u"2024-03-01 10:00:00"_s, 21.5, u"30XXX10"_s, u"nota d'água"_s}});
        inst.leituras(u"Medias"_s, u"B"_s, {{u"2024-03-01 10:00:00"_s, u"ND"_s}});
        executarAlteracao({u"A"_s, u"B"_s}, m_vigia);
        QCOMPARE(
            inst.linha(u"SELECT group_concat(Data || '|' || Sensor || '|' || NomeSensor || '|' || Temperatura || '|' "
                       "|| ifnull(Observacoes, '-') || '|' || flag, ';') FROM Medias"_s),
            QVariantList{u"2024-03-01 10:00:00|B|Velho|21.5|30XXX10|nota d'água;2024-03-01 10:00:00|B|Novo|ND|-| "_s});
    }

    void contagemIgualAoEfeito() {
        const Instalacao inst;
        int linhas = 5;
        for (const QString &s : {u"A"_s, u"B"_s, u"C"_s, u"D"_s, u"E"_s})
            encher(s, linhas++);
        // A's rows go with B; C ends in D, which stands before it; a lower-case name is the same sensor; E stays.
        const std::vector<AlteracaoSensor> lista = {{u"A"_s, u"b"_s}, {u"B"_s, {}, true}, {u"D"_s, u"F"_s, true},
                                                    {u"C"_s, u"D"_s}, {u"E"_s, u"E"_s},   {u"A"_s, {}, true}};
        Contagens movidas;
        Contagens eliminadas;
        for (const ContagemTabela &c : contarAlteracoes(lista, m_vigia)) {
            movidas[c.tabela] = c.movidas;
            eliminadas[c.tabela] = c.eliminadas;
        }
        for (const TabelaComSensor &t : tabelasComSensor()) {
            const bool registo = t.nome == u"Sensores";
            QCOMPARE(movidas.contains(t.nome), !t.deFora);
            QCOMPARE(movidas.value(t.nome), t.deFora || registo ? 0 : 5 + 8 + 7);
            QCOMPARE(eliminadas.value(t.nome), t.deFora ? 0 : registo ? 4 : 5 + 6);
        }

        const auto total = [] {
            Contagens c;
            for (const TabelaComSensor &t : tabelasComSensor())
                c[t.nome] = texto(u"SELECT COUNT(*) FROM "_s + t.nome).toLongLong();
            return c;
        };
        const Contagens antes = total();
        for (const AlteracaoSensor &a : lista)
            executarAlteracao(a, m_vigia);
        const Contagens depois = total();
        for (auto i = antes.begin(); i != antes.end(); ++i)
            QCOMPARE(i.value() - depois[i.key()], eliminadas.value(i.key()));
        QVERIFY(contarAlteracoes({{u"E"_s, u"e "_s}}, m_vigia).empty());
    }

    void falhaAMeioNaoMudaNada() {
        const Instalacao inst;
        encher(u"A"_s, 4);
        encher(u"B"_s, 4);
        const auto antes = std::pair(contagens(u"A"_s), contagens(u"B"_s));
        inst.executar(u"CREATE TRIGGER t BEFORE DELETE ON Sensores BEGIN SELECT RAISE(ABORT, 'no'); END"_s);
        QVERIFY_THROWS_EXCEPTION(Falha, executarAlteracao({u"A"_s, u"B"_s}, m_vigia));
        QVERIFY_THROWS_EXCEPTION(Falha, executarAlteracao({u"A"_s, {}, true}, m_vigia));
        QVERIFY(std::pair(contagens(u"A"_s), contagens(u"B"_s)) == antes);
        inst.executar(u"DROP TRIGGER t"_s); // the write lock is free again
        executarAlteracao({u"A"_s, u"B"_s}, m_vigia);
        QCOMPARE(contagens(u"B"_s), esperadas(8, 4, 1));
    }

    void abandonoAMeioNaoMudaNada() {
        const Instalacao inst;
        encher(u"A"_s, 1500);
        const Contagens antes = contagens(u"A"_s);
        for (const qint64 quando : {qint64(1), qint64(5000), qint64(14 * 1500 + 1)}) {
            auto dono = std::make_unique<QObject>();
            const Vigia vigia(dono.get());
            const Progresso fechar = [&](qint64 feitas) {
                if (feitas >= quando)
                    dono.reset();
            };
            QVERIFY_THROWS_EXCEPTION(Interrompido, executarAlteracao({u"A"_s, u"B"_s, true}, vigia, fechar));
            QCOMPARE(contagens(u"A"_s), antes);
            QCOMPARE(contagens(u"B"_s), esperadas(0, 0, 0));
        }
    }

    void eventosDuranteAFusao() {
        const Instalacao inst;
        inst.leituras(u"Medias"_s, u"A"_s, u"2024-01-01 00:00:00"_s, 60, QList<double>(60'000, 21.5));
        QTimer relogio;
        int voltas = 0;
        relogio.callOnTimeout([&] { ++voltas; });
        relogio.start(0);
        QElapsedTimer tempo;
        tempo.start();
        contarAlteracoes({{u"A"_s, u"B"_s}}, m_vigia);
        executarAlteracao({u"A"_s, u"B"_s}, m_vigia);
        // Once every 15 ms is the aim; a loaded machine may be granted a few times that.
        QVERIFY2(voltas >= tempo.elapsed() / 100, qPrintable(u"%1 in %2 ms"_s.arg(voltas).arg(tempo.elapsed())));
        QVERIFY(voltas > 0);
    }

    // Killed at any moment, a merge has happened as a whole or not at all.
    void resisteAoFim() {
        constexpr int linhas = 1500;
        const Instalacao inst;
        encher(idDaCadeia(0), linhas);
        cnBD().executarGuiao(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
                             "INSERT INTO Sensores (SensorID) SELECT printf('S%06d', i) FROM n"_s);
        ligacaoPartilhada().fechar();
        QRandomGenerator acaso(11);
        int aMeio = 0;
        for (int vez = 0; vez < 15; ++vez) {
            QProcess filho;
            filho.start(QCoreApplication::applicationFilePath(), {u"--fusoes"_s, inst.caminhoBD()});
            QVERIFY(filho.waitForReadyRead());
            QTest::qSleep(int(acaso.bounded(1, 250)));
            filho.kill();
            QVERIFY(filho.waitForFinished());
            QCOMPARE(filho.exitStatus(), QProcess::CrashExit); // it was still at work
            const QByteArray ultima = filho.readAll().trimmed().split('\n').last();
            const bool dentro = ultima.startsWith('i');
            aMeio += dentro;

            ligacaoPartilhada().abrir(inst.caminhoBD());
            const QString dono = texto(u"SELECT MIN(SensorID) FROM Sensores"_s);
            QCOMPARE(contagens(dono)[u"Medias"_s], linhas);
            for (const TabelaComSensor &t : tabelasComSensor()) {
                if (t.nome == u"Sensores" || t.deFora)
                    continue;
                QCOMPARE(texto(u"SELECT COUNT(*) || ' ' || MIN(%2) || ' ' || MAX(%2) FROM %1"_s.arg(t.nome, t.coluna)),
                         u"%1 %2 %2"_s.arg(QString::number(linhas), dono));
            }
            // What was told to be done is done.
            const int n = ultima.mid(1).toInt();
            QVERIFY2(dono == idDaCadeia(n + 1) || (dentro && dono == idDaCadeia(n)),
                     qPrintable(dono + ultima.constData()));
            QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
            ligacaoPartilhada().fechar();
        }
        QVERIFY(aMeio > 0);
    }

    void copia() {
        Instalacao inst;
        inst.relogio(u"2024-03-05 09:08:07"_s);
        encher(u"A"_s, 1500);
        QFile::setPermissions(inst.caminhoBD(), QFile::ReadOwner | QFile::WriteOwner);
        int ultima = 0;
        int total = 0;
        const QString primeira = copiaDatada(m_vigia, [&](int feito, int todo) {
            QVERIFY(feito > ultima && feito <= todo);
            ultima = feito;
            total = todo;
        });
        QCOMPARE(primeira, inst.ficheiro(u"BD/Kelvark-2024-03-05_09-08-07.mdb"_s));
        QCOMPARE(ultima, total);
        QCOMPARE(QFile::permissions(primeira) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

        // Another one in the same second stands beside it.
        const QByteArray bytes = Instalacao::lerFicheiro(primeira);
        executarAlteracao({u"A"_s, {}, true}, m_vigia);
        const QString segunda = copiaDatada(m_vigia);
        QCOMPARE(segunda, inst.ficheiro(u"BD/Kelvark-2024-03-05_09-08-07-2.mdb"_s));
        QVERIFY(Instalacao::lerFicheiro(primeira) == bytes);
        QCOMPARE(ficheirosAoLado(inst), (QStringList{QFileInfo(segunda).fileName(), QFileInfo(primeira).fileName()}));

        // The copy is a database that the program opens, with what was removed since.
        ligacaoPartilhada().fechar();
        ligacaoPartilhada().abrir(primeira);
        QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
        QCOMPARE(contagens(u"A"_s), esperadas(1500, 1500, 1));
    }

    void copiaDeUmSoMomento() {
        const Instalacao inst;
        encher(u"A"_s, 8000);
        int passos = 0;
        int esperados = 0;
        const QString caminho = copiaDatada(m_vigia, [&](int, int total) {
            // Another program writes after every step; were the copy to start over each time, it would never end.
            inst.executar(u"INSERT INTO Medias (Sensor, Data) VALUES ('A', 'late')"_s);
            esperados = total / 128 + 1;
            QVERIFY2(++passos <= esperados, "the copy started over");
        });
        QVERIFY(passos > 5);
        QCOMPARE(contagens(u"A"_s)[u"Medias"_s], 8000 + passos);
        ligacaoPartilhada().fechar();
        ligacaoPartilhada().abrir(caminho);
        QCOMPARE(contagens(u"A"_s), esperadas(8000, 8000, 1));
        QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
    }

    void copiaAbandonada() {
        const Instalacao inst;
        encher(u"A"_s, 1500);
        auto dono = std::make_unique<QObject>();
        const Vigia vigia(dono.get());
        bool aMeio = false;
        QVERIFY_THROWS_EXCEPTION(Interrompido, copiaDatada(vigia, [&](int feito, int total) {
                                     aMeio = feito < total;
                                     dono.reset();
                                 }));
        QVERIFY(aMeio);
        QCOMPARE(ficheirosAoLado(inst), QStringList());
    }

    void copiaEmPastaSoDeLeitura() {
        const Instalacao inst;
        encher(u"A"_s, 10);
        const QString pasta = inst.ficheiro(u"BD"_s);
        const auto modoAntes = QFile::permissions(pasta);
        const auto leitura = QFile::ReadOwner | QFile::ExeOwner | QFile::ReadOther | QFile::ExeOther;
        QFile::setPermissions(pasta, leitura);
        QFile::setPermissions(inst.ficheiro({}), leitura);
        // The superuser may write everywhere, so somebody else has to try.
        const bool superutilizador = geteuid() == 0;
        QVERIFY(!superutilizador || seteuid(65534) == 0);
        const QString motivo = falhaDe([&] { copiaDatada(m_vigia); }).descricao;
        QVERIFY(!superutilizador || seteuid(0) == 0);
        QFile::setPermissions(inst.ficheiro({}), modoAntes);
        QFile::setPermissions(pasta, modoAntes);
        QVERIFY2(motivo.startsWith(u"Não é possível criar a cópia"_s), qPrintable(motivo));
        QCOMPARE(ficheirosAoLado(inst), QStringList());
    }

    void copiaComDiscoCheio() {
        const Instalacao inst;
        encher(u"A"_s, 1500);
        // A bound on the size of files acts as a full disk does: a write in the middle fails.
        const auto sinalAntes = std::signal(SIGXFSZ, SIG_IGN);
        rlimit antes{};
        QCOMPARE(getrlimit(RLIMIT_FSIZE, &antes), 0);
        for (const rlim_t limite : {rlim_t(1000), rlim_t(300'000)}) {
            rlimit apertado = antes;
            apertado.rlim_cur = limite;
            setrlimit(RLIMIT_FSIZE, &apertado);
            const QString motivo = falhaDe([&] { copiaDatada(m_vigia); }).descricao;
            setrlimit(RLIMIT_FSIZE, &antes);
            QVERIFY2(motivo.startsWith(u"A cópia da base de dados em"_s), qPrintable(motivo));
            QCOMPARE(ficheirosAoLado(inst), QStringList());
        }
        std::signal(SIGXFSZ, sinalAntes);
        QVERIFY(QFile::exists(copiaDatada(m_vigia)));
    }

private:
    QObject m_dono;

    Vigia m_vigia{&m_dono};
};

int main(int argc, char **argv) {
    const QCoreApplication app(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--fusoes") == 0)
        return fusoesSemFim(QFile::decodeName(argv[2]));
    tst_fusao teste;
    return QTest::qExec(&teste, argc, argv);
}
#include "tst_fusao.moc"
