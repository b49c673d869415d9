#include "core/datas.h"
#include "tests/apoio/instalacao.h"
#include "views/familiaListagens.h"

namespace {

const MembroListagem &membro(QStringView form) {
    for (const MembroListagem &m : familiaListagens())
        if (m.form == form)
            return m;
    qFatal("no such listing");
}

QStringList coluna(const ModeloListagem &modelo, int c) {
    QStringList textos;
    for (int i = 0; i < modelo.rowCount(); ++i)
        textos.append(modelo.data(modelo.index(i, c), Qt::DisplayRole).toString());
    return textos;
}

const QDateTime desde = datas::instanteDe(datas::segundosDe(u"2026-01-01"_s));
const QDateTime ate = datas::instanteDe(datas::segundosDe(u"2026-12-31"_s));

} // namespace

class TesteListagem : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void filtros_data() {
        // valores: newest first
        const Tabela<bool, bool, QStringList> caso("soComNota", "soMedias", "valores");
        caso("all", false, false, {u"50"_s, u"40"_s, u"30"_s, u"20"_s, u"10"_s});
        // One blank counts as filled, nothing and Null do not.
        caso("notes", true, false, {u"50"_s, u"30"_s, u"10"_s});
        caso("averages", false, true, {u"50"_s, u"40"_s});
        caso("both", true, true, {u"50"_s});
    }
    void filtros() {
        QFETCH(const bool, soComNota);
        QFETCH(const bool, soMedias);
        QFETCH(const QStringList, valores);
        Instalacao instalacao;
        instalacao.leituras(u"Humidade"_s, u"S1"_s,
                            {{u"2026-01-01 00:00:00"_s, 10, {}, u" "_s},
                             {u"2026-01-02 00:00:00"_s, 20, {}, QVariant()},
                             {u"2026-01-05 00:00:00"_s, 50, {}, u"porta"_s}});
        instalacao.leituras(
            u"Humidade"_s, u"S2"_s,
            {{u"2026-01-03 00:00:00"_s, 30, {}, u"degelo"_s}, {u"2026-01-04 00:00:00"_s, 40, {}, u""_s}});
        instalacao.executar(u"UPDATE Humidade SET MediaSync = 'TRUE' WHERE Percentagem >= 40"_s);
        ModeloListagem modelo;
        const MembroListagem &m = membro(u"frmListagemObservacoesHumidade");
        modelo.abrir(listagens::consulta(m, {{ate, desde}, {{u"S1"_s}, {u"S2"_s}}, soComNota, soMedias}));
        QCOMPARE(coluna(modelo, 3), valores);
        QCOMPARE(modelo.columnCount(), 5);
    }

    // The columns of that table are known by their places, not by their names.
    void alarmesDoSegundoSensorForaDoIntervalo() {
        Instalacao instalacao;
        instalacao.executar(u"DROP TABLE Alarmes"_s);
        instalacao.executar(u"CREATE TABLE Alarmes (SondaID TEXT, Sonda TEXT, Data TEXT, Max, Min, Lida)"_s);
        for (const auto &[sonda, data] :
             {std::pair{u"S1"_s, u"2025-06-01 10:00:00"_s}, std::pair{u"S1"_s, u"2026-06-01 10:00:00"_s},
              std::pair{u"S2"_s, u"2025-06-02 10:00:00"_s}, std::pair{u"S3"_s, u"2026-06-02 10:00:00"_s}})
            instalacao.executar(u"INSERT INTO Alarmes VALUES (?, 'n', ?, 30, 5, 31.5)"_s, {sonda, data});
        ModeloListagem modelo;
        modelo.abrir(listagens::consulta(membro(u"frmListagemAlarmesMediasTemp"),
                                         {{desde, ate}, {{u"S1"_s}, {u"S2"_s}}, false, false}));
        QCOMPARE(coluna(modelo, 0), QStringList({u"S1"_s, u"S2"_s}));
        QCOMPARE(coluna(modelo, 2), QStringList({u"01/06/2026 10:00:00"_s, u"02/06/2025 10:00:00"_s}));
        QCOMPARE(coluna(modelo, 5).first(), u"31,5"_s);
    }

    void notaEscritaNaGrelha() {
        Instalacao instalacao;
        instalacao.leituras(u"Medias"_s, u"O'Neil"_s, u"2026-03-01 00:00:00"_s, 0, {1, 2, 3});
        ModeloListagem modelo;
        modelo.abrir(listagens::consulta(membro(u"frmListagemObservacoesMedias"), {{desde, ate}, {{u"O'Neil"_s}}}));
        const int linha = int(coluna(modelo, 3).indexOf(u"2,00"_s));
        QVERIFY(!modelo.setData(modelo.index(linha, 3), u"9"_s, Qt::EditRole));
        QVERIFY(modelo.flags(modelo.index(linha, 4)) & Qt::ItemIsEditable);
        QVERIFY(modelo.setData(modelo.index(linha, 4), u"porta 'aberta'"_s, Qt::EditRole));
        QCOMPARE(instalacao.linha(u"SELECT COUNT(*), MAX(Temperatura) FROM Medias WHERE flag = 'porta ''aberta'''"_s),
                 QVariantList({1, 2}));
        modelo.abrir(listagens::consulta(membro(u"frmListagemObservacoesPressao"), {{desde, ate}, {{u"O'Neil"_s}}}));
        QVERIFY(modelo.vazio());
    }

    void notaEntretanto_data() {
        const Tabela<QString, QString, QString> caso("entretanto", "escrita", "aviso");
        const QString outraSonda =
            u"DELETE FROM Medias WHERE %1 = 2; INSERT INTO Medias (%1, Data, Sensor, "
            "Temperatura, flag) VALUES (2, '2026-03-01 00:00:10', 'S9', 2, 'alheia')"_s.arg(dialecto::ordem);
        caso("gone", u"DELETE FROM Medias WHERE %1 = 2"_s.arg(dialecto::ordem), u"nova"_s, u"já não está"_s);
        caso("another sensor's row under its number", outraSonda, u"nova"_s, u"já não está"_s);
        caso("changed by a colleague", u"UPDATE Medias SET flag = 'do colega' WHERE %1 = 2"_s.arg(dialecto::ordem),
             u"nova"_s, u"\"do colega\""_s);
        caso("opened, and left as it was", u"UPDATE Medias SET flag = 'do colega' WHERE %1 = 2"_s.arg(dialecto::ordem),
             u"velha"_s, {});
    }
    // Also when the grid has read its rows anew since the cell was opened.
    void notaEntretanto() {
        QFETCH(const QString, entretanto);
        QFETCH(const QString, escrita);
        QFETCH(const QString, aviso);
        Instalacao instalacao;
        instalacao.leituras(u"Medias"_s, u"S1"_s, u"2026-03-01 00:00:00"_s, 10, {1, 2, 3});
        instalacao.executar(u"UPDATE Medias SET flag = 'velha'"_s);
        ModeloListagem modelo;
        modelo.abrir(listagens::consulta(membro(u"frmListagemObservacoesMedias"), {{desde, ate}, {{u"S1"_s}}}));
        QTRY_VERIFY(modelo.contado());
        QCOMPARE(modelo.data(modelo.index(1, 4), Qt::EditRole).toString(), u"velha"_s);
        cnBD().executarGuiao(entretanto);
        const auto guardado = [&] {
            return instalacao.linha(u"SELECT group_concat(Sensor || Temperatura || flag) FROM Medias"_s);
        };
        const QVariantList antes = guardado();
        for (int vez = 0; vez < 2; ++vez) {
            if (!aviso.isEmpty())
                instalacao.dialogos.esperarMensagem(aviso);
            QCOMPARE(modelo.setData(modelo.index(1, 4), escrita, Qt::EditRole), aviso.isEmpty());
            QCOMPARE(guardado(), antes);
        }
        // A row that stands elsewhere by now is found again by what it is.
        instalacao.executar(u"UPDATE Medias SET %1 = 77 WHERE Temperatura = 3"_s.arg(dialecto::ordem));
        QVERIFY(modelo.setData(modelo.index(0, 4), u"nova"_s, Qt::EditRole));
        QCOMPARE(instalacao.linha(u"SELECT flag FROM Medias WHERE %1 = 77"_s.arg(dialecto::ordem)),
                 QVariantList({u"nova"_s}));
    }

    // More branches than the engine merges: their rows are merged all the same, and pages begin where they began.
    void muitosSensores() {
        Instalacao instalacao;
        constexpr int sensores = 1100;
        QList<QStringList> chaves;
        {
            Transaccao transaccao(cnBD());
            for (int i = 0; i < sensores; ++i) {
                chaves.append({u"S%1"_s.arg(i)});
                for (int n = 0; n < 3; ++n)
                    cnBD().executar(
                        u"INSERT INTO Temperaturas VALUES (?, ?, 'n', ?, NULL, '')"_s,
                        {datas::textoBD(datas::segundosDe(desde) + (i * 7 + n) % 500 * 60), chaves.last().first(), i});
            }
            transaccao.confirmar();
        }
        ModeloListagem modelo;
        modelo.abrir(listagens::consulta(membro(u"frmListagemObservacoesTemp"), {{desde, ate}, chaves}));
        QTRY_VERIFY(modelo.contado());
        QCOMPARE(modelo.rowCount(), 3 * sensores);
        QMap<QString, int> vistos;
        double anterior = 0;
        for (int i = 3 * sensores - 1; i >= 0; --i) { // from the end: each page is read by itself
            const double data =
                datas::segundosDe(datas::lerDataHora(modelo.data(modelo.index(i, 1), Qt::DisplayRole).toString()));
            QVERIFY(data >= anterior);
            anterior = data;
            ++vistos[modelo.data(modelo.index(i, 2), Qt::DisplayRole).toString()];
        }
        QCOMPARE(vistos.size(), sensores);
        QVERIFY(std::ranges::all_of(vistos, [](int vezes) { return vezes == 3; }));
    }

    // Every row once, by date and then by when it was stored, wherever the user scrolls to and whatever arrives
    // meanwhile; one date crosses several pages, and its values are in another order.
    void paginas_data() {
        const Tabela<int> caso("linhasPorFatia");
        caso("first page at hand", 5000);
        caso("first page read again", 100);
    }
    void paginas() {
        QFETCH(const int, linhasPorFatia);
        Instalacao instalacao;
        constexpr int linhas = 60000;
        estado().linhasPorFatia = linhasPorFatia;
        const auto valor = [](int guardada) { return guardada * 7919 % linhas; }; // each once
        {
            Transaccao transaccao(cnBD());
            for (int i = 0; i < linhas; ++i)
                cnBD().executar(
                    u"INSERT INTO Temperaturas VALUES (?, ?, 'n', ?, NULL, '')"_s,
                    {datas::textoBD(datas::segundosDe(desde) + i / 700 * 3600), i % 2 ? u"S1"_s : u"S2"_s, valor(i)});
            transaccao.confirmar();
        }
        ModeloListagem modelo;
        modelo.abrir(
            listagens::consulta(membro(u"frmListagemObservacoesTemp"), {{desde, ate}, {{u"S1"_s}, {u"S2"_s}}}));
        QVERIFY(modelo.rowCount() < linhas);
        const auto conferir = [&](int i) {
            QCOMPARE(modelo.data(modelo.index(i, 2), Qt::DisplayRole).toString(),
                     QString::number(valor(linhas - 1 - i)));
        };
        for (const int i : {0, 99, modelo.rowCount() - 1})
            conferir(i);
        const QString noMeio = datas::textoBD(datas::segundosDe(desde) + 40 * 3600);
        for (const QString &data : {u"2026-02-01 00:00:00"_s, noMeio})
            instalacao.leituras(u"Temperaturas"_s, u"S1"_s, data, 3600, {-1, -2, -3});
        QTRY_VERIFY(modelo.contado());
        QCOMPARE(modelo.rowCount(), linhas);
        for (const int primeira : {50000, 0, 30000, 10000, 40000, 20000})
            for (int i = primeira; i < primeira + 10000; ++i)
                conferir(i);
    }

    // The count's cursor sees an older database than the writer's: it must not stand in a note's way, and finds its
    // place again.
    void notaDuranteAContagem() {
        Instalacao instalacao;
        constexpr int linhas = 2000;
        estado().linhasPorFatia = 200;
        {
            Transaccao transaccao(cnBD());
            for (int i = 0; i < linhas; ++i)
                cnBD().executar(
                    u"INSERT INTO Medias (Data, Sensor, NomeSensor, Temperatura) VALUES (?, 'S1', 'n', ?)"_s,
                    {datas::textoBD(datas::segundosDe(desde) + i / 7 * 60), i});
            transaccao.confirmar();
        }
        ModeloListagem modelo;
        modelo.abrir(listagens::consulta(membro(u"frmListagemObservacoesMedias"), {{desde, ate}, {{u"S1"_s}}}));
        Ligacao captura;
        captura.abrir(instalacao.caminhoBD());
        for (int vez = 0; vez < 3; ++vez) {
            QVERIFY(!modelo.contado());
            const int conhecidas = modelo.rowCount();
            captura.executar(u"INSERT INTO Medias (Data, Sensor, NomeSensor, Temperatura) "
                             "VALUES ('2026-11-01 00:00:00', 'S1', 'n', -1)"_s);
            QVERIFY(modelo.setData(modelo.index(vez, 4), u"nota %1"_s.arg(vez), Qt::EditRole));
            QCoreApplication::processEvents();
            QVERIFY(modelo.rowCount() > conhecidas);
        }
        QVERIFY(!modelo.contado());
        QTRY_VERIFY(modelo.contado());
        QCOMPARE(modelo.rowCount(), linhas);
        const QStringList valores = coluna(modelo, 3);
        QCOMPARE(QSet<QString>(valores.begin(), valores.end()).size(), linhas);
        QCOMPARE(coluna(modelo, 4).mid(0, 3), QStringList({u"nota 0"_s, u"nota 1"_s, u"nota 2"_s}));
        QCOMPARE(instalacao.linha(u"SELECT COUNT(*) FROM Medias WHERE flag LIKE 'nota _'"_s), QVariantList({3}));
    }

    void falhas() {
        Instalacao instalacao;
        instalacao.executar(u"DROP TABLE AlarmesHum"_s);
        ModeloListagem modelo;
        QVERIFY_THROWS_EXCEPTION(
            Falha, modelo.abrir(listagens::consulta(membro(u"frmListagemAlarmesHum"), {{desde, ate}, {{u"S"_s}}})));
        QVERIFY(modelo.vazio());
        modelo.abrir(listagens::consulta(membro(u"frmListagemAlarmesHum"), {}));
        QVERIFY(modelo.vazio());
    }
};

QTEST_GUILESS_MAIN(TesteListagem)
#include "tst_listagem.moc"
