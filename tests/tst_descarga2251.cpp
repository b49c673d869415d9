

// Units served one after the other over real sockets, from the search to the erased memory.
#include "data/ligacao.h"
#include "data/recordset.h"
#include "poseidon/descarga/acerto2251.h"
#include "poseidon/descarga/descarga2251.h"
#include "poseidon/descarga/logBruto.h"
#include "poseidon/descarga/pesquisa2251.h"
#include "tests/apoio/tabela.h"
#include "tests/log2251.h"
#include "tests/unidadesDeTeste.h"

#include <QDirIterator>
#include <QPointer>
#include <QSignalSpy>

using listaPoseidons::Lista;
using simulador::Defeito;
using simulador::Defeitos;
using simulador::Unidade;

namespace {

simulador::Definicao definicao(const QString &endereco, int registos = 300) {
    simulador::Definicao d;
    d.endereco = endereco;
    d.nome = u"Unidade "_s + endereco.section(u'.', -1);
    d.registos = registos;
    return d;
}

// A row as the list shows a unit that was found, ticked.
int juntar(Lista &lista, const Unidade &u, bool apagar = false) {
    const auto &d = u.definicao();
    return lista.AdicionarLinhaPoseidon(d.endereco, u.portaWeb(), d.mac, d.modelo, u"Poseidon 2251"_s, d.nome, u"AUT"_s,
                                        true, apagar, 5);
}

bool correr(Descarga2251 &descarga, int ms = 20000) {
    QSignalSpy fim(&descarga, &Descarga2251::terminou);
    descarga.descarregar();
    return !fim.isEmpty() || fim.wait(ms);
}

QStringList memoria(const Unidade &u) {
    QStringList linhas;
    auto &registo = const_cast<Unidade &>(u).registo();
    for (qint64 n = 0; n < registo.quantos(); ++n)
        linhas += QString::fromUtf8(registo.linha(registo.primeiro() + n));
    return linhas;
}

QStringList ficheirosBrutos() {
    QStringList todos;
    QDirIterator i(logBruto::pasta(), QDir::Files, QDirIterator::Subdirectories);
    while (i.hasNext())
        todos += i.next();
    todos.sort();
    return todos;
}

QStringList linhasDe(const QString &caminho) {
    return QString::fromUtf8(Instalacao::lerFicheiro(caminho)).split(u'\n', Qt::SkipEmptyParts);
}

int quantas(const QString &tabela, const QString &unidade) {
    Recordset rs = cnBD().consultar(
        u"SELECT COUNT(*) FROM %1 WHERE Sensor IN (SELECT SensorID FROM Sensores WHERE PoseidonIP = ?)"_s.arg(tabela),
        {QString(u'2' + unidade)});
    return rs.avancar() ? int(rs.inteiro(0)) : -1;
}

const QString mau = u"127.0.0.3"_s;
const QString bom = u"127.0.0.4"_s;

} // namespace

class tst_descarga2251 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_instalacao = std::make_unique<log2251::BaseRapida>();
        definir(u"LogEspera"_s, u"400"_s);
        definir(u"PesquisaDuracao"_s, u"300"_s);
    }

    void cleanup() { m_instalacao.reset(); }

    void doPrincipioAoFim() {
        const auto a = ligarUnidade(definicao(u"127.0.0.2"_s));
        const auto b = ligarUnidade(definicao(mau));
        definir(u"Pesquisa"_s, u"127.0.0.2:%1 127.0.0.3:%2"_s.arg(a->portaPesquisa()).arg(b->portaPesquisa()));
        Lista lista;
        Pesquisa2251 pesquisa(lista);
        QSignalSpy fim(&pesquisa, &Pesquisa2251::terminou);
        QVERIFY(pesquisa.PesquisarRede());
        QVERIFY(fim.wait(5000));
        QVERIFY(fim.at(0).at(0).toBool());
        QCOMPARE(lista.total(), 2);
        const int na = lista.linha(1).IP == a->endereco() ? 1 : 2;
        lista.linha(na).SELECT = u"SIM"_s;
        lista.linha(na).BLNERASELOG = u"1"_s;
        lista.linha(na).NLEITURAS = u"4"_s;

        const QStringList antes = memoria(*a);
        Descarga2251 descarga(lista);
        QSignalSpy comeco(&descarga, &Descarga2251::comecou);
        QVERIFY(correr(descarga));
        QCOMPARE(comeco.size(), 1);
        QVERIFY(!descarga.activa());
        const DescargaLog *d = descarga.resultado(na);
        QCOMPARE(d->Estado, 1);
        QCOMPARE(d->Mensagem, u"Dados tranferidos com sucesso"_s);
        QCOMPARE(lista.linha(na).DSTAT, 8);
        QCOMPARE(d->PortaTelnet, qint32(a->portaConsola()));
        QCOMPARE(lista.linha(3 - na).DSTAT, 7); // was not ticked
        QCOMPARE(quantas(u"Temperaturas"_s, b->endereco()), 0);
        // Four of five temperature channels are connected; every 12th record is of another kind.
        QVERIFY(quantas(u"Temperaturas"_s, a->endereco()) > 1000);
        QVERIFY(quantas(u"Humidade"_s, a->endereco()) > 500);
        QVERIFY(quantas(u"SensUI_Leituras"_s, a->endereco()) > 500);
        QVERIFY(qAbs(quantas(u"Medias"_s, a->endereco()) - quantas(u"Temperaturas"_s, a->endereco()) / 4) < 8);
        QCOMPARE(m_instalacao->linha(u"SELECT Mac, CAST(Modelo AS INTEGER), ApagarLog, NLeiturasM FROM Poseidons"_s),
                 QVariantList({a->definicao().mac, u"4"_s, u"0"_s, u"4"_s}));

        QCOMPARE(ficheirosBrutos().size(), 1);
        QVERIFY2(ficheirosBrutos().first().contains(u"/2024/03/127.0.0.2_"), qPrintable(ficheirosBrutos().first()));
        QCOMPARE(linhasDe(ficheirosBrutos().first()), antes);
        QCOMPARE(a->registo().quantos(), 0);
        QCOMPARE(b->registo().quantos(), 300);
    }

    void pesquisaSemResposta() {
        simulador::Definicao d = definicao(u"127.0.0.2"_s);
        d.defeitos = {Defeito::BuscaMuda};
        const auto u = ligarUnidade(d);
        definir(u"Pesquisa"_s, u"127.0.0.2:"_s + QString::number(u->portaPesquisa()));
        Lista lista;
        lista.AdicionarLinhaPoseidon(u"10.0.0.1"_s, 80, u"00:01"_s, 4, u"Poseidon 2251"_s, u"Cave"_s, u"MAN"_s, false,
                                     false, 1);
        Pesquisa2251 pesquisa(lista);
        QSignalSpy fim(&pesquisa, &Pesquisa2251::terminou);
        QSignalSpy tique(&pesquisa, &Pesquisa2251::tique);
        QVERIFY(pesquisa.PesquisarRede());
        QVERIFY(fim.wait(5000));
        QVERIFY(tique.size() >= 1);
        QVERIFY(!pesquisa.activa());
        QCOMPARE(lista.total(), 1); // a search never removes a row
        QCOMPARE(lista.linha(1).UDP, u"R"_s);
    }

    void falhaNaoParaAsOutras_data() {
        const Tabela<Defeitos, QString, int, bool, bool> linha("defeitos", "mensagem", "icone", "comLinhas", "apagada");
        const auto caso = [&](const char *nome, Defeito d, const QString &mensagem, int icone = 9, bool linhas = false,
                              bool apagada = false) { linha(nome, {d}, mensagem, icone, linhas, apagada); };
        caso("accepts and keeps silent", Defeito::Silencioso, u"Erro desconhecido"_s);
        caso("half a document", Defeito::XmlMetade, u"Erro desconhecido"_s);
        caso("no elements", Defeito::XmlSemElementos, u"Estrutura do XML inválida"_s);
        caso("date in another form", Defeito::DataIso, u"Erro ao verificação da data/hora"_s);
        caso("no log protocol", Defeito::LogNaoFala, u"Erro no dispositivo: "_s);
        caso("busy", Defeito::LogRecusa, u"Erro no dispositivo: "_s);
        caso("stops without closing", Defeito::LogPara, u"Erro na ligação: o dispositivo deixou de responder"_s);
        caso("wrong sum", Defeito::LogSoma, u"Erro ao descarregar o ficheiro BIN: "_s);
        caso("zero bytes", Defeito::LogBinario, u"Erro ao converter o ficheiro BIN em CSV: "_s);
        caso("garbage between the lines", Defeito::LogLixo, u"Dados tranferidos com sucesso"_s, 8, true, true);
        caso("refuses to erase", Defeito::ApagarRecusa, u"Erro ao apagar: "_s, 9, true);
        caso("never confirms the erasure", Defeito::ApagarMudo, u"Erro ao limpar a memória: "_s, 9, true);
    }
    void falhaNaoParaAsOutras() {
        QFETCH(Defeitos, defeitos);
        simulador::Definicao d = definicao(mau);
        d.defeitos = defeitos;
        const auto primeira = ligarUnidade(d);
        const auto segunda = ligarUnidade(definicao(bom, 50));
        Lista lista;
        juntar(lista, *primeira, true);
        juntar(lista, *segunda, true);
        Descarga2251 descarga(lista);
        QVERIFY(correr(descarga));

        const DescargaLog *falhada = descarga.resultado(1);
        QFETCH(QString, mensagem);
        QVERIFY2(falhada->Mensagem.startsWith(mensagem), qPrintable(falhada->Mensagem));
        QTEST(lista.linha(1).DSTAT, "icone");
        QCOMPARE(falhada->Estado, lista.linha(1).DSTAT == 8 ? 1 : -1);
        QTEST(quantas(u"Temperaturas"_s, mau) > 0, "comLinhas");
        QFETCH(bool, comLinhas);
        QCOMPARE(ficheirosBrutos().filter(mau).size(), comLinhas ? 1 : 0);
        QTEST(primeira->registo().quantos() == 0, "apagada");

        QCOMPARE(descarga.resultado(2)->Estado, 1);
        QCOMPARE(lista.linha(2).DSTAT, 8);
        QVERIFY(quantas(u"Temperaturas"_s, bom) > 0);
        QCOMPARE(segunda->registo().quantos(), 0);
    }

    void relogioDesacertado() {
        simulador::Definicao d = definicao(mau, 50);
        d.acertoMinutos = 21;
        const auto u = ligarUnidade(d);
        Lista lista;
        juntar(lista, *u, true);
        Descarga2251 descarga(lista);
        QVERIFY(correr(descarga));
        QCOMPARE(lista.linha(1).DSTAT, 12);
        QCOMPARE(descarga.resultado(1)->Mensagem, u"Data/Hora não sincronizada"_s);
        QCOMPARE(quantas(u"Temperaturas"_s, mau), 0);
        QCOMPARE(u->registo().quantos(), 50);
        // The configuration comes in whatever the clock says.
        QVERIFY(m_instalacao->linha(u"SELECT COUNT(*) FROM Sensores"_s).value(0).toInt() > 5);
    }

    void semEscolhidas() {
        Lista lista;
        lista.AdicionarLinhaPoseidon(u"127.0.0.9"_s, 80, u"00:09"_s, 4, {}, {}, u"AUT"_s, false, false, 1);
        Descarga2251 descarga(lista);
        QSignalSpy comeco(&descarga, &Descarga2251::comecou);
        QSignalSpy fim(&descarga, &Descarga2251::terminou);
        descarga.descarregar();
        QCOMPARE(comeco.size(), 0);
        QCOMPARE(fim.size(), 1);
        QCOMPARE(lista.linha(1).DSTAT, 7);
    }

    void semRegistosFicaEmCurso() {
        simulador::Definicao d = definicao(mau);
        d.defeitos = {Defeito::LogVazio};
        const auto u = ligarUnidade(d);
        Lista lista;
        juntar(lista, *u, true);
        Descarga2251 descarga(lista);
        QVERIFY(correr(descarga));
        QCOMPARE(lista.linha(1).DSTAT, 10);
        QCOMPARE(descarga.resultado(1)->Estado, 0);
        QCOMPARE(descarga.resultado(1)->Mensagem, QString());
        QVERIFY(ficheirosBrutos().isEmpty());
    }

    void baseCheiaNaoApaga() {
        const auto u = ligarUnidade(definicao(mau));
        cnBD().executar(u"CREATE TRIGGER cheio BEFORE INSERT ON Humidade BEGIN SELECT RAISE(ABORT, 'cheio'); END"_s);
        Lista lista;
        juntar(lista, *u, true);
        Descarga2251 descarga(lista);
        QVERIFY(correr(descarga));
        QCOMPARE(descarga.resultado(1)->Mensagem, u"Erro de Base de Dados"_s);
        QVERIFY2(descarga.resultado(1)->Pormenor.contains(u"cheio"), qPrintable(descarga.resultado(1)->Pormenor));
        QCOMPARE(lista.linha(1).DSTAT, 9);
        QCOMPARE(u->registo().quantos(), 300);
        // The lines were on the disk before the tables were touched.
        QCOMPARE(linhasDe(ficheirosBrutos().value(0)), memoria(*u));
    }

    void semFicheiroBrutoNadaSeEscreve() {
        const auto u = ligarUnidade(definicao(mau));
        Instalacao::escreverFicheiro(logBruto::pasta(), "not a folder");
        Lista lista;
        juntar(lista, *u, true);
        Descarga2251 descarga(lista);
        QVERIFY(correr(descarga));
        QVERIFY2(descarga.resultado(1)->Mensagem.startsWith(u"Erro ao escrever no ficheiro: "),
                 qPrintable(descarga.resultado(1)->Mensagem));
        QCOMPARE(quantas(u"Temperaturas"_s, mau), 0);
        QCOMPARE(u->registo().quantos(), 300);
    }

    void nadaReunidoNaoApaga() {
        simulador::Definicao d = definicao(mau);
        d.canais = {{u"101"_s, u"Solto"_s, u"C"_s, 0, 0, 0, 0, false}};
        d.intervalo = 60;
        d.registos = 3;
        // Records of inputs or outputs would give rows: some minutes have none.
        d.agora = [] { return estado().ambiente.agora().addSecs(-60 * 3); };
        const auto u = ligarUnidade(d);
        for (const QString &linha : memoria(*u))
            QVERIFY2(linha.endsWith(u";101;-9999"), qPrintable(linha));
        Lista lista;
        juntar(lista, *u, true);
        Descarga2251 descarga(lista);
        QVERIFY(correr(descarga));
        QCOMPARE(descarga.resultado(1)->Estado, 1);
        QVERIFY(descarga.resultado(1)->Pormenor.contains(u"não foi apagada"));
        QCOMPARE(u->registo().quantos(), 3);
    }

    void duasVezesAsMesmasLinhas() {
        const auto u = ligarUnidade(definicao(mau));
        Lista lista;
        juntar(lista, *u);
        Descarga2251 descarga(lista);
        QVERIFY(correr(descarga));
        const auto primeira = log2251::tudo();
        QVERIFY(correr(descarga));
        QVERIFY(log2251::tudo() == primeira);
        QCOMPARE(ficheirosBrutos().size(), 2); // in the same second, yet each in its own file
    }

    void ficheiroQueNaoSeLe() {
        Lista lista;
        lista.AdicionarLinhaPoseidon(u"127.0.0.9"_s, 9, u"00:09"_s, 4, {}, {}, u"MAN"_s, true, true, 1);
        lista.AdicionarLinhaPoseidon(u"127.0.0.8"_s, 9, u"00:08"_s, 4, {}, {}, u"MAN"_s, true, true, 1);
        Descarga2251 descarga(lista);
        QSignalSpy fim(&descarga, &Descarga2251::terminou);
        descarga.importarFicheiro(1, m_instalacao->ficheiro(u"ausente.log"_s));
        QVERIFY(fim.wait(10000));
        const QString dita = descarga.resultado(1)->Mensagem;
        QVERIFY(dita.startsWith(u"Erro ao descarregar o ficheiro BIN: "));
        QCOMPARE(lista.linha(2).DSTAT, 7); // ticked, but a file concerns one row
        descarga.importarFicheiro(2, m_instalacao->ficheiro(u"outro.log"_s));
        QVERIFY(fim.wait(10000));
        QCOMPARE(descarga.resultado(1)->Mensagem, dita); // what the other row says stays
        QVERIFY(!descarga.resultado(2)->Mensagem.isEmpty());
    }

    void donoDesaparece_data() {
        // espera: ms
        const Tabela<Defeitos, int> caso("defeitos", "espera");
        caso("while the document is fetched", {Defeito::Silencioso}, 100);
        caso("while the log comes", {Defeito::LogPara}, 300);
        caso("while the erasure is waited for", {Defeito::ApagarMudo}, 600);
        caso("while rows are written", {}, -1);
    }
    void donoDesaparece() {
        QFETCH(int, espera);
        simulador::Definicao d = definicao(mau, espera < 0 ? 60000 : 300);
        d.intervalo = 60;
        QFETCH(Defeitos, defeitos);
        d.defeitos = defeitos;
        const auto u = ligarUnidade(d);
        definir(u"LogEspera"_s, u"5000"_s);
        Lista lista;
        juntar(lista, *u, true);
        QPointer<Descarga2251> descarga = new Descarga2251(lista);
        QTimer fecho;
        connect(&fecho, &QTimer::timeout, this, [&] {
            if (descarga && (espera >= 0 || !ficheirosBrutos().filter(QRegularExpression(u"log$"_s)).isEmpty()))
                delete descarga.data();
        });
        fecho.start(espera < 0 ? 5 : espera);
        descarga->descarregar();
        QTRY_VERIFY_WITH_TIMEOUT(descarga.isNull(), 10000);
        QTest::qWait(50);
        // No transaction is left open.
        cnBD().executar(u"BEGIN"_s);
        cnBD().executar(u"COMMIT"_s);
        if (!defeitos.tem(Defeito::ApagarMudo))
            QCOMPARE(u->registo().quantos(), d.registos);
    }

    void acertoDoRelogio_data() {
        const Tabela<Defeitos, int, bool, bool> caso("defeitos", "codigo", "apagado", "acertado");
        caso("set", {}, 3, true, true);
        caso("late", {Defeito::Lento}, 3, true, true);
        caso("the console closes", {Defeito::ConsolaFecha}, 5, true, false);
        caso("the console denies", {Defeito::ConsolaNega}, 5, true, true);
        caso("the console is silent", {Defeito::ConsolaMuda}, 5, true, false);
        caso("the unit does not erase", {Defeito::ApagarRecusa}, 3, false, true);
        caso("no document afterwards", {Defeito::WebEstado}, 4, true, true);
    }
    void acertoDoRelogio() {
        QFETCH(Defeitos, defeitos);
        simulador::Definicao d = definicao(mau);
        d.acertoMinutos = -90;
        d.atrasoMs = 20;
        d.defeitos = defeitos;
        const auto u = ligarUnidade(d);
        definir(u"PortaConsola"_s, QString::number(u->portaConsola()));
        Acerto2251 acerto;
        acerto.definirTempos({20, 1500, 50});
        const auto r = acerto.ActualizarDataHoraDoPoseidon(mau, QString::number(u->portaWeb()));
        QTEST(r.codigo, "codigo");
        QTEST(u->registo().quantos() == 0, "apagado");
        const qint64 desvio = qAbs(u->registo().relogio().secsTo(estado().ambiente.agora()));
        QTEST(desvio < 60, "acertado");
    }

private:
    std::unique_ptr<log2251::BaseRapida> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_descarga2251)
#include "tst_descarga2251.moc"
