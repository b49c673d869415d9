#include "core/datas.h"
#include "tests/apoio/instalacao.h"
#include "views/alarme.h"
#include "views/familiaGraficos.h"
#include "views/ilegiveis.h"
#include "views/leituras.h"
#include "views/notas.h"
#include "views/periodos.h"
#include "views/sensores.h"

namespace {

using notas::Resultado;

const QString sensorA = u"28A0000000000001"_s;

QStringList idsDe(const QList<Sensor> &lista) {
    QStringList ids;
    for (const Sensor &s : lista)
        ids.append(s.id);
    return ids;
}

QDateTime instante(const QString &texto) {
    return datas::instanteDe(datas::segundosDe(texto));
}

notas::Lugar lugar(QStringView tabela, const QDateTime &data) {
    return {tabela, u"Data", {u"Sensor"}, {sensorA}, data};
}

struct Lidas {
    QList<Leitura> linhas;
    double media = 0;
};

Lidas ler(const Intervalo &intervalo, bool comLimites = true, const QString &sensor = sensorA) {
    Lidas lidas;
    lidas.media = lerLeituras({{u"Temperaturas", u"Temperatura"}, {sensor}, intervalo, comLimites},
                              [&](const Leitura &l) { lidas.linhas.append(l); });
    return lidas;
}

Intervalo dia() {
    return {instante(u"2024-03-10 00:00:00"_s), instante(u"2024-03-10 23:59:59"_s)};
}

} // namespace

class tst_vistas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void regraDoTipo_data() {
        // aceites: of T H P D
        const Tabela<QString, QString> caso("tipo", "aceites");
        caso("C", u"P 1250C"_s, u"T"_s);
        caso("blank at the end", u"P 1250% "_s, u"H"_s);
        caso("sens-ui volts", u"P 1250V"_s, {});
        caso("sens-ui amperes", u"P 1250A"_s, {});
        caso("pressure of a device", u"P 1250K"_s, u"P"_s);
        caso("dew point of a device", u"P 1250D"_s, u"D"_s);
        // Only those whole types are kept from temperatures: another one that ends alike passes both.
        caso("other pressure", u"K"_s, u"TP"_s);
        caso("other dew point", u"HX D"_s, u"TD"_s);
        caso("volts with a blank", u"P 1250V "_s, u"T"_s);
        caso("small k", u"P 1250k"_s, u"T"_s);
        caso("empty", {}, u"T"_s);
    }

    void regraDoTipo() {
        QFETCH(QString, tipo);
        QString obtidos;
        for (const Grandeza &g : grandezas::tabela)
            if (g.regra.aceita(tipo))
                obtidos += g.sufixo[0];
        QTEST(obtidos, "aceites");
    }

    void limites_data() {
        const Tabela<QString, QString> caso("texto", "esperado");
        caso("both", u"30XXX5"_s, u"30|5"_s);
        caso("comma and point", u"30,5XXX-2.25"_s, u"30.5|-2.25"_s);
        caso("blanks", u" 30 XXX NA "_s, u"30|-"_s);
        caso("none", u"NAXXXNA"_s, u"-|-"_s);
        caso("empty parts", u"XXX"_s, u"-|-"_s);
        caso("no separator", u"30"_s, u"-|-"_s);
        caso("small separator", u"30xxx5"_s, u"-|-"_s);
        caso("empty", {}, u"-|-"_s);
        caso("more parts", u"30XXX5XXX99"_s, u"30|5"_s);
        caso("no number", u"30XXXcinco"_s, u"30|- unreadable"_s);
        caso("no numbers", u"trintaXXXcinco"_s, u"-|- unreadable"_s);
    }

    void limites() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QFETCH(QString, texto);
        const auto escrever = [](double v) { return std::isnan(v) ? u"-"_s : QString::number(v); };
        const Limites limites = lerLimites(texto);
        const QString lidos = escrever(limites.maximo) + u'|' + escrever(limites.minimo);
        QTEST(QString(lidos + (limites.ilegivel ? u" unreadable"_s : QString())), "esperado");
    }

    // The same value between the same limits is not the same to all three rules.
    void alarmes_data() {
        constexpr double nenhum = std::numeric_limits<double>::quiet_NaN();
        // esperado: of a reading, a bar, a sample
        const Tabela<double, double, double, QString> caso("maximo", "minimo", "valor", "esperado");
        caso("on the maximum", 30.0, 5.0, 30.0, u"+++"_s);
        caso("under the maximum", 30.0, 5.0, 29.9, u"000"_s);
        caso("on the minimum", 30.0, 5.0, 5.0, u"---"_s);
        caso("over the minimum", 30.0, 5.0, 5.1, u"000"_s);
        caso("crossed limits", 5.0, 30.0, 10.0, u"+--"_s);
        caso("only maximum, on it", 30.0, nenhum, 30.0, u"+++"_s);
        caso("only maximum, under", 30.0, nenhum, -80.0, u"000"_s);
        caso("only minimum, on it", nenhum, 5.0, 5.0, u"---"_s);
        caso("only minimum, over: the bar is lost", nenhum, 5.0, 500.0, u"0 0"_s);
        caso("none", nenhum, nenhum, 500.0, u"000"_s);
    }
    void alarmes() {
        QFETCH(double, maximo);
        QFETCH(double, minimo);
        QFETCH(double, valor);
        const auto sinal = [](std::optional<EstadoDoPonto> e) { return e ? u"0+-"_s.at(int(*e)) : QChar(u' '); };
        const Limites limites{.maximo = maximo, .minimo = minimo};
        const QChar letras[]{sinal(alarme::daLeitura(limites, valor)), sinal(alarme::doBalde(limites, valor)),
                             sinal(alarme::daAmostra(maximo, minimo, valor))};
        QTEST(QString(letras, 3), "esperado");
    }

    void media_data() {
        const Tabela<QVariantList, double, int> caso("valores", "esperada", "pontos");
        caso("numbers", {1.0, 2.0, 6.0}, 3.0, 3);
        caso("comma, point and number", {u"1,5"_s, u"2.5"_s, 5.0}, 3.0, 3);
        caso("ND does not weigh", {10.0, u"ND"_s, 20.0}, 15.0, 3);
        caso("Null does not weigh", {10.0, {}, 20.0}, 15.0, 3);
        caso("only ND", {u"ND"_s, u" nd "_s}, 0.0, 2);
        caso("nothing", {}, 0.0, 0);
    }

    void media() {
        const Instalacao inst;
        QFETCH(QVariantList, valores);
        QList<Instalacao::Leitura> linhas;
        for (const QVariant &v : valores)
            linhas.append({u"2024-03-10 10:%1:00"_s.arg(linhas.size(), 2, 10, QChar(u'0')), v});
        inst.leituras(u"Temperaturas"_s, sensorA, linhas);
        const Lidas lidas = ler(dia());
        QTEST(lidas.media, "esperada");
        QTEST(int(lidas.linhas.size()), "pontos");
        for (qsizetype i = 0; i < valores.size(); ++i) // a value that could not be read is a gap, not a nought
            if (valores[i].isNull() || valores[i].toString().contains(u"nd"_s, Qt::CaseInsensitive))
                QVERIFY(std::isnan(lidas.linhas[i].valor));
    }

    void lerEmSeries() {
        const Instalacao inst;
        inst.leituras(u"Temperaturas"_s, sensorA,
                      {{u"2024-03-10 12:00:01"_s, 3.0, u"junkXXXjunk"_s, u"nota"_s},
                       {u"2024-03-10 12:00:00"_s, 2.0, QVariant(), QVariant()},
                       {u"2024-03-10 23:59:59"_s, 4.0, u"30XXX5"_s, u""_s},
                       {u"2024-03-10 00:00:00"_s, 1.0, u"30XXX5"_s, u" "_s},
                       {u"2024-03-11 00:00:00"_s, 9.0}});
        inst.leituras(u"Temperaturas"_s, u"outro"_s, {{u"2024-03-10 12:00:00"_s, 99.0}});
        const Lidas lidas = ler(dia(), false); // without limits their texts are not looked at
        QCOMPARE(lidas.linhas.size(), 4);      // both ends included, in order of date
        for (int i = 0; i < 4; ++i)
            QCOMPARE(lidas.linhas[i].valor, i + 1.0);
        QVERIFY(lidas.linhas[2].comNota);
        for (const int i : {0, 1, 3}) // one blank, Null and nothing are no note
            QVERIFY(!lidas.linhas[i].comNota);
    }

    // Left out of line and average, counted and named once; a bad limit costs its reading nothing. The order within a
    // second is that of writing, which neither dates nor values tell.
    void ilegiveis() {
        Instalacao inst;
        inst.leituras(u"Temperaturas"_s, sensorA,
                      {{u"2024-03-10 10:00:00"_s, 4.0, u"30XXXcinco"_s},
                       {u"2024-03-10 10:00:02"_s, 9.0},
                       {u"2024-03-10 10:00:02"_s, u"abc"_s},
                       {u"2024-03-10 10:00:02"_s, HUGE_VAL},
                       {u"2024-03-10 10:00:02"_s, 5.0},
                       {u"2024-03-10 10:00:03"_s, 6.0},
                       {u"2024-03-10 10:00:04"_s, 8.0},
                       {u"2024-03-10 10:00:04"_s, 1.0},
                       {u"2024-03-10 1h"_s, 77.0}});
        Ilegiveis ilegiveis;
        QList<double> valores;
        const double media = lerLeituras({{u"Temperaturas", u"Temperatura"}, {sensorA}, dia(), true, &ilegiveis},
                                         [&](const Leitura &l) { valores.append(l.valor); });
        QCOMPARE(valores, QList<double>({4, 9, 5, 6, 8, 1}));
        QCOMPARE(media, 5.5);
        inst.erros.esperar(u"de fora: 4. O primeiro: tabela Temperaturas, sensor %1, data 2024-03-10 10:00:00, "
                           "\"30XXXcinco\"."_s.arg(sensorA));
        ilegiveis.relatar("load");
        ilegiveis.relatar("nothing is left to say");
        QCOMPARE(inst.erros.carregamentos, 1);
    }

    // The bounds of a range may come in either order.
    void limitesEmCache() {
        const Instalacao inst;
        inst.leituras(u"Temperaturas"_s, u"it's"_s,
                      {{u"2024-03-10 10:00:00"_s, 1.0, u"30XXX5"_s},
                       {u"2024-03-10 10:01:00"_s, 1.0, u"30XXX5"_s},
                       {u"2024-03-10 10:02:00"_s, 1.0, QVariant()},
                       {u"2024-03-10 10:03:00"_s, 1.0, u"30XXX6"_s}});
        const Intervalo trocado(instante(u"2024-03-10 23:59:59"_s), instante(u"2024-03-10 00:00:00"_s));
        const Lidas lidas = ler(trocado, true, u"it's"_s);
        QCOMPARE(lidas.linhas[1].limites.minimo, 5.0);
        QVERIFY(!lidas.linhas[2].limites.temMaximo());
        QCOMPARE(lidas.linhas[3].limites.minimo, 6.0);
    }

    void sensoresPorFiltro_data() {
        const Tabela<QString, QStringList> caso("tag", "ids");
        caso("all", u"0"_s, {u"a"_s, u"b"_s, u"c"_s, u"d"_s});
        caso("group", u"7"_s, {u"b"_s, u"d"_s});
        caso("unit, both leading digits", u"#P#10.0.0.1"_s, {u"a"_s, u"b"_s});
        caso("unit with a quote", u"#P#o'unit"_s, {u"d"_s});
        caso("no such group", u"8"_s, {});
        caso("not quite a unit", u"#P#"_s, {});
    }

    void sensoresPorFiltro() {
        const Instalacao inst;
        inst.sensores({{u"a"_s, u"A"_s, u"P 1250C"_s, u"SIM"_s, 1, u"POSEIDON"_s, u"110.0.0.1"_s},
                       {u"b"_s, u"B"_s, u"P 1250C"_s, u"SIM"_s, 7, u"POSEIDON"_s, u"210.0.0.1"_s},
                       {u"c"_s, u"C"_s, u"P 1250C"_s, u"SIM"_s, 1, u"POSEIDON"_s, u"310.0.0.1"_s},
                       {u"d"_s, u"D"_s, u"P 1250C"_s, u"SIM"_s, 7, u"POSEIDON"_s, u"2o'unit"_s},
                       {u"h"_s, u"H"_s, u"P 1250%"_s, u"SIM"_s, 7, u"POSEIDON"_s, u"210.0.0.1"_s}});
        QFETCH(QString, tag);
        QObject dono;
        QTEST(idsDe(sensores::listar(grandezas::tabela[0].regra, tag, Vigia(&dono))), "ids");
    }

    void sensoresDesactivados() {
        const Instalacao inst;
        inst.sensores({{u"a"_s, u"A"_s}, {u"b"_s, u"B"_s, u"C"_s, u"NAO"_s}, {u"c"_s, u"C"_s, u"C"_s, u""_s}});
        inst.executar(u"INSERT INTO Sensores (SensorID, Tipo) VALUES ('d', 'C')"_s);
        QObject dono;
        const QList<Sensor> lista = sensores::listar(grandezas::tabela[0].regra, u"0"_s, Vigia(&dono));
        QCOMPARE(lista.size(), 4);
        for (int i = 0; i < 4; ++i)
            QCOMPARE(lista[i].desactivado, i > 0);
    }

    void filtros() {
        const Instalacao inst;
        inst.executar(u"INSERT INTO Grupos VALUES (3, 'Câmaras')"_s);
        inst.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome) VALUES ('10.0.0.1', 'Cave')"_s);
        QObject dono;
        QStringList obtidos;
        for (const Filtro &f : sensores::listarFiltros(u"Todos"_s, Vigia(&dono)))
            obtidos.append(f.tag + u'=' + f.texto);
        QCOMPARE(obtidos, QStringList({u"0=Todos"_s, u"#P#10.0.0.1=Cave"_s, u"3=Câmaras"_s}));
    }

    // Two readings of one sensor in the same second: the note is that of the first stored, each time, unless the value
    // says which.
    void notaDeUmaSoLinha() {
        const Instalacao inst;
        inst.leituras(u"Medias"_s, sensorA, {{u"2024-03-10 10:00:00"_s, 9.0}, {u"2024-03-10 10:00:00"_s, u"1,5"_s}});
        notas::Lugar onde = lugar(u"Medias", instante(u"2024-03-10 10:00:00"_s));
        for (const QString &nota : {u"primeira"_s, u"outra"_s})
            QCOMPARE(notas::gravar(*notas::procurar(onde), nota), Resultado::Gravada);
        QCOMPARE(notas::texto(*notas::procurar(onde)), u"outra"_s);
        QVERIFY(!notas::procurar(lugar(u"Medias", instante(u"2024-03-10 10:00:03"_s))));
        onde.colunaValor = u"Temperatura";
        onde.eDoPonto = [](const Recordset &rs, int coluna) { return valorNaAltura(rs, coluna, 1.5); };
        QCOMPARE(notas::gravar(*notas::procurar(onde), u"a segunda"_s), Resultado::Gravada);
        QCOMPARE(inst.linha(u"SELECT flag FROM Medias WHERE Temperatura = 9"_s).value(0).toString(), u"outra"_s);
        QCOMPARE(inst.linha(u"SELECT flag FROM Medias WHERE Temperatura = '1,5'"_s).value(0).toString(),
                 u"a segunda"_s);
    }

    void notaEntretanto_data() {
        const Tabela<QString, int, QString> caso("entretanto", "resultado", "notasDepois");
        const QString linha = u"('2024-03-10 10:00:00', '%1', 'n', %2, '', 'velha', '')"_s;
        const QString apagar = u"DELETE FROM Humidade WHERE %1 = 1; "_s.arg(dialecto::ordem);
        const QString repor = u"INSERT INTO Humidade VALUES "_s + linha.arg(sensorA, u"50"_s);
        caso("nothing", {}, 0, u"nova|alheia"_s);
        caso("row gone", apagar, 1, u"alheia"_s);
        caso("row rewritten", apagar + repor, 0, u"alheia|nova"_s);
        caso("its number is another sensor's",
             apagar + u"INSERT INTO Humidade (%1, Data, Sensor, Percentagem, flag) "
                      "VALUES (1, '2024-03-10 10:00:00', 'outro', 50, 'velha')"_s.arg(dialecto::ordem),
             1, u"velha|alheia"_s);
        caso("value rewritten", u"UPDATE Humidade SET Percentagem = 52 WHERE %1 = 1"_s.arg(dialecto::ordem), 1,
             u"velha|alheia"_s);
        caso("note changed", u"UPDATE Humidade SET flag = 'do colega' WHERE %1 = 1"_s.arg(dialecto::ordem), 2,
             u"do colega|alheia"_s);
        caso("note changed in case only", u"UPDATE Humidade SET flag = 'Velha' WHERE %1 = 1"_s.arg(dialecto::ordem), 2,
             u"Velha|alheia"_s);
        caso("changed, and a twin bears the old one",
             u"UPDATE Humidade SET flag = 'do colega' WHERE %1 = 1; "_s.arg(dialecto::ordem) + repor, 2,
             u"do colega|alheia|velha"_s);
    }
    // Between the moment when a note is shown and the one when it is stored.
    void notaEntretanto() {
        QFETCH(const QString, entretanto);
        QFETCH(const int, resultado);
        QFETCH(const QString, notasDepois);
        const Instalacao inst;
        inst.leituras(u"Humidade"_s, sensorA, {{u"2024-03-10 10:00:00"_s, 50.0, {}, u"velha"_s}});
        inst.leituras(u"Humidade"_s, u"outro"_s, {{u"2024-03-10 10:00:00"_s, 50.0, {}, u"alheia"_s}});
        notas::Lugar onde = lugar(u"Humidade", instante(u"2024-03-10 10:00:00"_s));
        onde.colunaValor = u"Percentagem";
        const notas::Linha mostrada = *notas::procurar(onde);
        cnBD().executarGuiao(entretanto);
        QCOMPARE(int(notas::gravar(mostrada, u"nova"_s)), resultado);
        QCOMPARE(inst.linha(u"SELECT group_concat(flag, '|') FROM (SELECT flag FROM Humidade ORDER BY %1)"_s.arg(
                                dialecto::ordem))
                     .value(0)
                     .toString(),
                 notasDepois);
    }

    void periodosDoMenu_data() {
        const Tabela<int, QDate, QDate> caso("qual", "hoje", "inicio");
        caso("today", 0, QDate(2024, 3, 1), QDate(2024, 3, 1));
        caso("seven days over a leap day", 1, QDate(2024, 3, 1), QDate(2024, 2, 24));
        caso("thirty days", 2, QDate(2024, 3, 30), QDate(2024, 3, 1));
        caso("month", 3, QDate(2024, 2, 29), QDate(2024, 2, 1));
        caso("thirteen months from a leap day", 4, QDate(2024, 3, 31), QDate(2023, 2, 28));
    }

    void periodosDoMenu() {
        QFETCH(int, qual);
        QFETCH(QDate, hoje);
        QTEST(periodos::lista[size_t(qual)].inicio(hoje), "inicio");
    }

    // Every row must name a table and columns that the database has, and a point form of its own over the same table.
    void familia() {
        const Instalacao inst;
        QSet<QString> forms;
        QCOMPARE(familiaGraficos().size(), grandezas::vistas.size());
        for (const MembroGrafico &m : familiaGraficos()) {
            lerLeituras({m.tabela, {sensorA}, dia(), true}, [](const Leitura &) {});
            QCOMPARE(m.pontos->tabela, m.tabela.nome);
            QCOMPARE(m.pontos->grafico, m.form);
            forms << m.form.toString() << m.pontos->form.toString();
        }
        QCOMPARE(forms.size(), 2 * qsizetype(grandezas::vistas.size()));
    }
};

QTEST_GUILESS_MAIN(tst_vistas)
#include "tst_vistas.moc"
