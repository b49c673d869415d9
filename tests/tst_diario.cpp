#include "core/eventos.h"
#include "data/comando.h"
#include "data/copiaDatada.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

namespace {

const QString inserir = u"INSERT INTO Grupos (codGrupo) VALUES (7)"_s;

void encher(Ligacao &bd, int linhas) {
    bd.executar(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
                "INSERT INTO Medias (Data, Sensor, Temperatura) SELECT '2024-01-01 00:00:00', 'S' || i, 4 FROM n"_s,
                {linhas});
}

} // namespace

// The log beside the database, and the place of both: what was written must be in the file that bears the name.
class tst_diario : public QObject {
    Q_OBJECT
    std::optional<Instalacao> m_inst;
    QObject m_dono;

    QString diario() const { return m_inst->caminhoBD() + u"-wal"_s; }
    QString anterior() const { return m_inst->ficheiro(u"anterior.mdb"_s); }
    void afastar(const QString &quem) const {
        if (quem == u"log")
            QVERIFY(QFile::remove(diario()));
        else if (quem == u"folder")
            QVERIFY(QDir().rename(m_inst->ficheiro(u"BD"_s), m_inst->ficheiro(u"BD-fora"_s)));
        else
            QVERIFY(QFile::rename(m_inst->caminhoBD(), anterior()));
        if (quem == u"replaced")
            QVERIFY(QFile::copy(m_inst->ficheiro(u"modelo.mdb"_s), m_inst->caminhoBD()));
    }

private Q_SLOTS:
    void init() {
        m_inst.emplace();
        m_inst->criarBase(m_inst->ficheiro(u"modelo.mdb"_s));
    }
    void cleanup() { m_inst.reset(); }

    // Looked at after every commit, whatever its size, so that a test need not write much.
    void recolhido_data() {
        const Tabela<QString> caso("leitor");
        caso("nobody reads", {});
        caso("a reader of an older state", u"meanwhile"_s);
        caso("the log of a program that was killed", u"killed"_s);
    }
    void recolhido() {
        QFETCH(QString, leitor);
        const MedidasDeRecolha aTodos{1, 0, std::chrono::milliseconds(1)};
        const QString caminho = m_inst->caminhoBD();
        ligacaoPartilhada().fechar();
        if (leitor == u"killed") {
            Filho morto([&caminho] {
                Ligacao bd;
                bd.abrir(caminho);
                encher(bd, 500);
                return QByteArray("written");
            });
            QCOMPARE(morto.esperar(), "written"); // ended without closing
        }
        const qint64 antes = QFileInfo(caminho).size();
        Ligacao outra;
        outra.abrir(caminho);
        std::optional<Recordset> cursor;
        if (leitor == u"meanwhile") {
            outra.executar(u"INSERT INTO Grupos (codGrupo) VALUES (1), (2)"_s);
            cursor.emplace(outra.consultar(u"SELECT codGrupo FROM Grupos"_s));
            QVERIFY(cursor->avancar());
        }
        cnBDPartilhadaCom(aTodos);
        if (leitor != u"killed")
            encher(cnBD(), 500);
        if (cursor) {
            QVERIFY(cursor->avancar()); // it goes on with what it began
            QVERIFY(QFileInfo(diario()).size() > 0);
            cursor.reset();
        }
        QTRY_COMPARE(QFileInfo(diario()).size(), 0); // cut, though nothing more is written
        QVERIFY(QFileInfo(caminho).size() > antes || leitor == u"killed");
        QCOMPARE(contar(outra, u"Medias"_s), 500);
        // All of it is in the file itself.
        QVERIFY(QFile::copy(caminho, anterior()));
        Ligacao copia;
        copia.abrir(anterior());
        QCOMPARE(contar(copia, u"Medias"_s), 500);
    }

    void foraDoLugar_data() {
        const Tabela<QString, QString> caso("quem", "acto");
        for (const QString &acto : {u"statement"_s, u"batch"_s, u"large batch"_s, u"command"_s, u"script"_s, u"copy"_s})
            caso(qPrintable(u"replaced, " + acto), u"replaced"_s, acto);
        for (const QString &acto : {u"batch under way"_s, u"large batch under way"_s})
            caso(qPrintable(u"replaced, " + acto), u"replaced"_s, acto);
        for (const QString &quem : {u"deleted"_s, u"folder"_s, u"log"_s})
            caso(qPrintable(quem), quem, u"statement"_s);
    }
    void foraDoLugar() {
        QFETCH(QString, quem);
        QFETCH(QString, acto);
        Ligacao &bd = cnBD();
        bd.executar(u"INSERT INTO Grupos (codGrupo) VALUES (1)"_s);
        const bool aMeio = acto.endsWith(u"under way");
        if (!aMeio)
            afastar(quem);
        const Resultado r = falhaDe([&] {
            if (acto == u"statement")
                bd.executar(inserir);
            else if (acto == u"script")
                bd.executarGuiao(inserir);
            else if (acto == u"command")
                Comando(bd, inserir).executar();
            else if (acto == u"copy")
                copiaDatada(Vigia(&m_dono));
            else {
                Transaccao transaccao(bd);
                bd.executar(inserir);
                if (aMeio)
                    afastar(quem);
                acto.startsWith(u"large") ? transaccao.confirmar([] {}) : transaccao.confirmar();
            }
        });
        QCOMPARE(r.numero, erros::falhaDoFicheiro);
        QVERIFY2(r.descricao.contains(u'"' + m_inst->caminhoBD() + u"\" foi apagado ou substituído"),
                 qPrintable(r.descricao));
        QCOMPARE(bd.novidadeDoLugar(), QString()); // the user knows
        if (quem == u"replaced")
            QCOMPARE(Instalacao::lerFicheiro(m_inst->caminhoBD()),
                     Instalacao::lerFicheiro(m_inst->ficheiro(u"modelo.mdb"_s)));
        if (quem == u"log") // the engine itself is blind to it
            return;
        QCOMPARE(contar(bd, u"Grupos"_s), 1); // what is seen is the former one, and nothing was added to it
    }

    void deVoltaAoLugar() {
        Ligacao &bd = cnBD();
        QCOMPARE(bd.novidadeDoLugar(), QString());
        afastar(u"replaced"_s);
        QVERIFY(bd.novidadeDoLugar().contains(m_inst->caminhoBD()));
        QCOMPARE(bd.novidadeDoLugar(), QString()); // once
        QVERIFY(QFile::remove(m_inst->caminhoBD()) && QFile::rename(anterior(), m_inst->caminhoBD()));
        QCOMPARE(bd.novidadeDoLugar(), QString());
        bd.executar(inserir);
        QCOMPARE(contar(bd, u"Grupos"_s), 1);
        {
            Transaccao transaccao(bd); // told by its own end
            afastar(u"deleted"_s);
            QCOMPARE(bd.novidadeDoLugar(), QString());
        }
        QVERIFY(!bd.novidadeDoLugar().isEmpty());
    }

private:
    void cnBDPartilhadaCom(const MedidasDeRecolha &medidas) const {
        ligacaoPartilhada().definirRecolha(medidas);
        ligacaoPartilhada().abrir(m_inst->caminhoBD());
    }
};

QTEST_GUILESS_MAIN(tst_diario)
#include "tst_diario.moc"
