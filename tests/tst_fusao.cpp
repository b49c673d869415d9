#include "core/eventos.h"
#include "data/copiaDatada.h"
#include "data/fusaoSensores.h"
#include "tests/apoio/discoCheio.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <csignal>
#include <sys/stat.h>
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
    const QStringList deFora =
        u"AlarmesPOrv AlarmesPressao Pontoorvalho PontoorvalhoPull Pressao PressaoPull SensUI_Relacoes"_s.split(u' ');
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

QString texto(const QString &sql) {
    Recordset rs = cnBD().consultar(sql);
    return rs.avancar() ? rs.texto(0) : u"(no row)"_s;
}

// Rows of a sensor in each table that a merge changes, in each that keeps the old identifier, and in the register. A
// table that differs from those of its kind is named.
QString contagens(const QString &sensor) {
    QStringList c(3);
    for (const TabelaComSensor &t : tabelasComSensor()) {
        Recordset rs = cnBD().consultar(u"SELECT COUNT(*) FROM %1 WHERE %2 = ?"_s.arg(t.nome, t.coluna), {sensor});
        rs.avancar();
        QString &n = c[t.nome == u"Sensores" ? 2 : t.deFora ? 1 : 0];
        if (n.isEmpty())
            n = rs.texto(0);
        else if (n.section(u' ', 0, 0) != rs.texto(0))
            n += u" %1 in %2"_s.arg(rs.texto(0), t.nome);
    }
    return c.join(u'/');
}

QStringList ficheirosAoLado(const Instalacao &inst) {
    const QStringList nomes = QDir(inst.ficheiro(u"BD"_s)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    return nomes.filter(QRegularExpression(u"^(?!Kelvark\\.mdb(-wal|-shm)?$)"_s));
}

QString idDaCadeia(int n) {
    return u"S%1"_s.arg(n, 6, 10, QChar(u'0'));
}

// Merges each sensor of a chain into the next one, and notes it, until so many steps are done; ends without tidying up.
QByteArray fusoesAte(int passos, const QString &caminho, const QString &diario) {
    QObject dono;
    const Progresso contar = [&passos](qint64) {
        if (--passos == 0)
            ::kill(::getpid(), SIGKILL);
    };
    ligacaoPartilhada().abrir(caminho);
    for (int n = texto(u"SELECT MIN(SensorID) FROM Sensores"_s).mid(1).toInt();; ++n) {
        Instalacao::escreverFicheiro(diario, "i" + QByteArray::number(n));
        executarAlteracao({idDaCadeia(n), idDaCadeia(n + 1)}, Vigia(&dono), contar);
        Instalacao::escreverFicheiro(diario, "f" + QByteArray::number(n));
    }
}

} // namespace

class tst_fusao : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void alteracao_data() {
        const Tabela<QString, bool, QString, QString> caso("novo", "eliminar", "deA", "deB");
        const QString fica = u"2100/2100/1"_s;
        const QString foi = u"0/2100/0"_s; // pressure, dew point and scales keep the old identifier
        const QString so = u"3/3/1"_s;
        caso("nothing", {}, false, fica, so);
        caso("merged", u"b'\"; --"_s, false, foi, u"2103/3/1"_s);
        caso("merged into one that no sensor has, blanks around", u" X "_s, false, foi, so);
        caso("removed", u"  "_s, true, foi, so);
        caso("merged and removed", u"b'\"; --"_s, true, foi, u"2103/3/1"_s);
        caso("into itself, other case", u"a'1"_s, false, fica, so);
        caso("into itself and removed", u"A'1"_s, true, foi, so);
    }
    void alteracao() {
        QFETCH(QString, novo);
        QFETCH(bool, eliminar);
        const Instalacao inst;
        encher(u"A'1"_s, 2100); // more than two batches
        encher(u"B'\"; --"_s, 3);
        encher(u"C"_s, 2);
        executarAlteracao({u"A'1"_s, novo, eliminar}, m_vigia);
        QTEST(contagens(u"A'1"_s), "deA");
        QTEST(contagens(u"B'\"; --"_s), "deB");
        QCOMPARE(contagens(u"C"_s), u"2/2/1"_s);
        QCOMPARE(contagens(u"X"_s), novo == u" X " ? u"2100/0/0"_s : u"0/0/0"_s);
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
        const std::vector<ContagemTabela> contadas = contarAlteracoes(lista, m_vigia);
        QCOMPARE(contadas.size(), 15U);
        for (const ContagemTabela &c : contadas) {
            const bool registo = c.tabela == u"Sensores";
            QCOMPARE(c.movidas, registo ? 0 : 5 + 8 + 7);
            QCOMPARE(c.eliminadas, registo ? 4 : 5 + 6);
        }
        for (const AlteracaoSensor &a : lista)
            executarAlteracao(a, m_vigia);
        constexpr int linhasDeTodos = 5 + 6 + 7 + 8 + 9;
        for (const TabelaComSensor &t : tabelasComSensor())
            QCOMPARE(contar(cnBD(), t.nome), t.nome == u"Sensores" ? 5 - 4 : linhasDeTodos - (t.deFora ? 0 : 5 + 6));
        QVERIFY(contarAlteracoes({{u"E"_s, u"e "_s}}, m_vigia).empty());
    }

    void aMeioNaoMudaNada() {
        const Instalacao inst;
        encher(u"A"_s, 1500);
        encher(u"B"_s, 5);
        inst.executar(u"CREATE TRIGGER t BEFORE DELETE ON Sensores BEGIN SELECT RAISE(ABORT, 'no'); END"_s);
        QVERIFY_THROWS_EXCEPTION(Falha, executarAlteracao({u"A"_s, u"B"_s}, m_vigia));
        QVERIFY_THROWS_EXCEPTION(Falha, executarAlteracao({u"A"_s, {}, true}, m_vigia));
        inst.executar(u"DROP TRIGGER t"_s);
        for (const qint64 quando : {1, 5000, 14 * 1500 + 1}) { // the window is closed
            auto dono = std::make_unique<QObject>();
            const Progresso fechar = [&](qint64 feitas) {
                if (feitas >= quando)
                    dono.reset();
            };
            QVERIFY_THROWS_EXCEPTION(Interrompido,
                                     executarAlteracao({u"A"_s, u"B"_s, true}, Vigia(dono.get()), fechar));
            QCOMPARE(contagens(u"A"_s), u"1500/1500/1"_s);
            QCOMPARE(contagens(u"B"_s), u"5/5/1"_s);
        }
        executarAlteracao({u"A"_s, u"B"_s}, m_vigia); // the write lock is free again
        QCOMPARE(contagens(u"B"_s), u"1505/5/1"_s);
    }

    void eventosDuranteAFusao() {
        const Instalacao inst;
        inst.leituras(u"Medias"_s, u"A"_s, u"2024-01-01 00:00:00"_s, 60, QList<double>(60'000, 21.5));
        QTimer relogio;
        int voltas = 0;
        relogio.callOnTimeout([&] { ++voltas; });
        relogio.start(0);
        estado().linhasPorFatia = 1;
        contarAlteracoes({{u"A"_s, u"B"_s}}, m_vigia);
        const int aContar = std::exchange(voltas, 0);
        executarAlteracao({u"A"_s, u"B"_s}, m_vigia);
        QVERIFY2(aContar > 0 && voltas > 20, qPrintable(u"%1, %2"_s.arg(aContar).arg(voltas)));
    }

    // Killed at any moment, a merge has happened as a whole or not at all.
    void resisteAoFim() {
        const Instalacao inst;
        encher(idDaCadeia(0), 1500);
        cnBD().executarGuiao(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
                             "INSERT INTO Sensores (SensorID) SELECT printf('S%06d', i) FROM n"_s);
        ligacaoPartilhada().fechar();
        const QString diario = inst.ficheiro(u"diario"_s);
        QRandomGenerator acaso(11);
        int aMeio = 0;
        QString dono;
        for (int vez = 0; vez < 30; ++vez) {
            const int passos = acaso.bounded(1, 100);
            Filho filho([&] { return fusoesAte(passos, inst.caminhoBD(), diario); });
            filho.esperar();
            const QByteArray ultima = Instalacao::lerFicheiro(diario);
            const bool dentro = !ultima.startsWith('f');
            aMeio += dentro;

            ligacaoPartilhada().abrir(inst.caminhoBD());
            dono = texto(u"SELECT MIN(SensorID) FROM Sensores"_s);
            QVERIFY2(contagens(dono).startsWith(u"1500/"_s), qPrintable(contagens(dono)));
            // What was told to be done is done.
            const int n = ultima.mid(1).toInt();
            QVERIFY2(ultima.isEmpty() || dono == idDaCadeia(n + 1) || (dentro && dono == idDaCadeia(n)),
                     qPrintable(dono + ultima.constData()));
            QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
            ligacaoPartilhada().fechar();
        }
        QVERIFY2(aMeio > 20 && dono > idDaCadeia(5), qPrintable(u"%1, %2"_s.arg(aMeio).arg(dono)));
    }

    void copia() {
        Instalacao inst;
        inst.relogio(u"2024-03-05 09:08:07"_s);
        encher(u"A"_s, 1500);
        QFile::setPermissions(inst.caminhoBD(), QFile::ReadOwner | QFile::WriteOwner);
        int falta = INT_MAX;
        const QString primeira = copiaDatada(m_vigia, [&](int feito, int todo) {
            QVERIFY(feito > 0 && todo - feito < falta);
            falta = todo - feito;
        });
        QCOMPARE(primeira, inst.ficheiro(u"BD/Kelvark-2024-03-05_09-08-07.mdb"_s));
        QCOMPARE(falta, 0);
        QCOMPARE(QFile::permissions(primeira) & (QFile::ReadGroup | QFile::ReadOther), QFile::Permissions());

        // Another one in the same second stands beside it.
        const QByteArray bytes = Instalacao::lerFicheiro(primeira);
        executarAlteracao({u"A"_s, {}, true}, m_vigia);
        const QString segunda = copiaDatada(m_vigia);
        QCOMPARE(segunda, inst.ficheiro(u"BD/Kelvark-2024-03-05_09-08-07-2.mdb"_s));
        QVERIFY(Instalacao::lerFicheiro(primeira) == bytes);
        QCOMPARE(ficheirosAoLado(inst), (QStringList{QFileInfo(segunda).fileName(), QFileInfo(primeira).fileName()}));
    }

    void copiaDeUmSoMomento() {
        const Instalacao inst;
        encher(u"A"_s, 8000);
        int passos = 0;
        const QString caminho = copiaDatada(m_vigia, [&](int, int total) {
            // Another program writes after every step; were the copy to start over each time, it would never end.
            inst.executar(u"INSERT INTO Medias (Sensor, Data) VALUES ('A', 'late')"_s);
            QVERIFY2(++passos <= total / 128 + 1, "the copy started over");
        });
        QVERIFY(passos > 5);
        QCOMPARE(contar(cnBD(), u"Medias"_s), 8000 + passos);
        ligacaoPartilhada().fechar();
        ligacaoPartilhada().abrir(caminho);
        QCOMPARE(contagens(u"A"_s), u"8000/8000/1"_s);
        QCOMPARE(texto(u"PRAGMA integrity_check"_s), u"ok"_s);
    }

    void copiaQueNaoAcaba() {
        const Instalacao inst;
        encher(u"A"_s, 1500);
        auto dono = std::make_unique<QObject>();
        bool aMeio = false;
        QVERIFY_THROWS_EXCEPTION(Interrompido, copiaDatada(Vigia(dono.get()), [&](int feito, int total) {
                                     aMeio = feito < total;
                                     dono.reset();
                                 }));
        QVERIFY(aMeio);
        QCOMPARE(ficheirosAoLado(inst), QStringList());
        const QByteArray pasta = QFile::encodeName(inst.ficheiro(u"BD"_s));
        QCOMPARE(::chmod(pasta.constData(), 0555), 0);
        QCOMPARE(::chmod(QFile::encodeName(inst.ficheiro(u"."_s)).constData(), 0755), 0);
        Filho semLicenca([this] { return falhaDe([this] { copiaDatada(m_vigia); }).descricao.toUtf8(); },
                         Filho::Quem::Ninguem);
        const QByteArray motivo = semLicenca.esperar();
        QCOMPARE(::chmod(pasta.constData(), 0755), 0);
        QVERIFY2(motivo.startsWith("Não é possível criar a cópia"), motivo.constData());
        for (const rlim_t limite : {rlim_t(1000), rlim_t(300'000)}) {
            const Resultado r = falhaDe([&] {
                const DiscoCheio cheio(limite);
                copiaDatada(m_vigia);
            });
            QVERIFY2(r.descricao.startsWith(u"A cópia da base de dados em"_s), qPrintable(r.descricao));
            // The engine's small codes must not pass for the numbers that the system tells apart.
            QVERIFY2(r.numero > erros::motorBD && r.numero < erros::motorBD + 10000,
                     qPrintable(QString::number(r.numero)));
            QCOMPARE(ficheirosAoLado(inst), QStringList());
        }
        // A killed program's goes with the next copy, a finished one stays.
        Filho morto([this] {
            copiaDatada(m_vigia, [](int, int) { ::pause(); });
            return QByteArray();
        });
        QTRY_VERIFY(ficheirosAoLado(inst).join(u' ').contains(u"-journal"));
        morto.matar();
        QVERIFY(ficheirosAoLado(inst).size() > 1);
        const QString copia = copiaDatada(m_vigia);
        QCOMPARE(ficheirosAoLado(inst), QStringList{QFileInfo(copia).fileName()});
    }

private:
    QObject m_dono;
    Vigia m_vigia{&m_dono};
};

QTEST_GUILESS_MAIN(tst_fusao)
#include "tst_fusao.moc"
