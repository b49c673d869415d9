// Units served one after the other over real sockets, from the document to the erased memory.
#include "poseidon/descarga/acerto2251.h"
#include "poseidon/descarga/descarga2251.h"
#include "poseidon/descarga/logBruto.h"
#include "poseidon/listaPoseidons.h"
#include "poseidon/reposicao2251.h"
#include "tests/apoio/espera.h"
#include "tests/log2251.h"
#include "tests/unidadesDeTeste.h"

using listaPoseidons::Lista;
using simulador::Defeito;
using simulador::Defeitos;

namespace {

const QString mau = u"127.0.0.3"_s;
const QString bom = u"127.0.0.4"_s;

simulador::Definicao unidade(const Defeitos &defeitos = {}, int registos = 300, const QString &endereco = mau) {
    return definicao(defeitos, registos, endereco);
}

// Units as the list shows those that were found, ticked and to be erased.
struct Cena {
    explicit Cena(const QList<simulador::Definicao> &definicoes) {
        for (const simulador::Definicao &definicao : definicoes) {
            unidades.push_back(ligarUnidade(definicao));
            const simulador::Definicao &d = unidades.back()->definicao();
            lista.AdicionarLinhaPoseidon(d.endereco, unidades.back()->portaWeb(), d.mac, d.modelo, u"Poseidon 2251"_s,
                                         d.nome, u"AUT"_s, true, true, 4);
        }
    }
    bool correr() {
        QSignalSpy fim(descarga.get(), &Descarga2251::terminou);
        descarga->descarregar();
        return fim.wait(20000);
    }
    simulador::Registo &registo(size_t n = 1) { return unidades[n - 1]->registo(); }
    const DescargaLog &resultado(int n = 1) const { return *descarga->resultado(n); }

    std::vector<std::unique_ptr<simulador::Unidade>> unidades;
    Lista lista;
    std::unique_ptr<Descarga2251> descarga = std::make_unique<Descarga2251>(lista);
};

QStringList ficheirosBrutos() {
    QStringList todos;
    QDirIterator i(logBruto::pasta(), QDir::Files, QDirIterator::Subdirectories);
    while (i.hasNext())
        todos += i.next();
    todos.sort();
    return todos;
}

int quantas(const QString &tabela, const QString &unidade) {
    return int(log2251::conteudo(u"SELECT 1 FROM %1 JOIN Sensores ON Sensor = SensorID WHERE PoseidonIP = '2%2'"_s.arg(
                                     tabela, unidade))
                   .size());
}

} // namespace

class tst_descarga2251 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() {
        m_instalacao = std::make_unique<log2251::BaseRapida>();
        definir(u"LogEspera"_s, u"400"_s);
    }
    void cleanup() { m_instalacao.reset(); }

    void doPrincipioAoFim() {
        Cena c({unidade(), unidade({}, 300, bom)});
        c.lista.linha(2).SELECT = u"NAO"_s;
        const QByteArray antes = (memoria(c.registo()).join(u'\n') + u'\n').toUtf8();
        QSignalSpy comeco(c.descarga.get(), &Descarga2251::comecou);
        QVERIFY(c.correr());
        QCOMPARE(comeco.size(), 1);
        QVERIFY(!c.descarga->activa());
        QCOMPARE(c.resultado().Estado, 1);
        QCOMPARE(c.resultado().Mensagem, u"Dados tranferidos com sucesso"_s);
        QCOMPARE(c.resultado().PortaTelnet, qint32(c.unidades[0]->portaConsola()));
        QCOMPARE(c.lista.linha(1).DSTAT, 8);
        QCOMPARE(c.lista.linha(2).DSTAT, 7); // was not ticked
        QCOMPARE(quantas(u"Temperaturas"_s, bom), 0);
        // Four of five temperature channels are connected; every 12th record is of another kind.
        QVERIFY(quantas(u"Temperaturas"_s, mau) > 1000);
        QVERIFY(quantas(u"Humidade"_s, mau) > 500);
        QVERIFY(quantas(u"SensUI_Leituras"_s, mau) > 500);
        QVERIFY(qAbs(quantas(u"Medias"_s, mau) - quantas(u"Temperaturas"_s, mau) / 4) < 8);
        QCOMPARE(log2251::conteudo(u"SELECT Mac, CAST(Modelo AS INTEGER), ApagarLog, NLeiturasM FROM Poseidons"_s),
                 QStringList(c.unidades[0]->definicao().mac + u"|4|0|4"));

        QCOMPARE(ficheirosBrutos().size(), 1);
        QVERIFY(ficheirosBrutos().first().contains(u"/2024/03/127.0.0.3_"));
        QCOMPARE(Instalacao::lerFicheiro(ficheirosBrutos().first()), antes);
        QCOMPARE(c.registo().quantos(), 0);
        QCOMPARE(c.registo(2).quantos(), 300);
    }

    void falhaNaoParaAsOutras_data() {
        const Tabela<Defeito, QString, bool> caso("defeito", "mensagem", "comLinhas");
        caso("accepts and keeps silent", Defeito::Silencioso, u"Erro desconhecido"_s, false);
        caso("half a document", Defeito::XmlMetade, u"Erro desconhecido"_s, false);
        caso("no elements", Defeito::XmlSemElementos, u"Estrutura do XML inválida"_s, false);
        caso("date in another form", Defeito::DataIso, u"Erro ao verificação da data/hora"_s, false);
        caso("busy", Defeito::LogRecusa, u"Erro no dispositivo: "_s, false);
        caso("stops without closing", Defeito::LogPara, u"Erro na ligação: o dispositivo deixou de responder"_s, false);
        caso("wrong sum", Defeito::LogSoma, u"Erro ao descarregar o ficheiro BIN: "_s, false);
        caso("zero bytes", Defeito::LogBinario, u"Erro ao converter o ficheiro BIN em CSV: "_s, false);
        caso("a channel without limits", Defeito::XmlCanal, u"Leituras guardadas; nem toda a configuração"_s, true);
        caso("refuses to erase", Defeito::ApagarRecusa, u"Erro ao apagar: "_s, true);
        caso("never confirms the erasure", Defeito::ApagarMudo, u"Erro ao limpar a memória: "_s, true);
    }
    void falhaNaoParaAsOutras() {
        QFETCH(Defeito, defeito);
        QFETCH(QString, mensagem);
        QFETCH(bool, comLinhas);
        Cena c({unidade({defeito}), unidade({}, 50, bom)});
        QVERIFY(c.correr());
        QVERIFY2(c.resultado().Mensagem.startsWith(mensagem), qPrintable(c.resultado().Mensagem));
        QCOMPARE(c.resultado().Estado, -1);
        QCOMPARE(c.lista.linha(1).DSTAT, 9);
        QCOMPARE(quantas(u"Temperaturas"_s, mau) > 0, comLinhas);
        QCOMPARE(ficheirosBrutos().filter(mau).size(), comLinhas ? 1 : 0);
        QCOMPARE(c.registo().quantos(), 300);

        QCOMPARE(c.resultado(2).Estado, 1);
        QCOMPARE(c.lista.linha(2).DSTAT, 8);
        QVERIFY(quantas(u"Temperaturas"_s, bom) > 0);
        QCOMPARE(c.registo(2).quantos(), 0);
    }

    void relogioDesacertado() {
        simulador::Definicao d = unidade({}, 50);
        d.acertoMinutos = 21;
        Cena c({d});
        QVERIFY(c.correr());
        QCOMPARE(c.lista.linha(1).DSTAT, 12);
        QCOMPARE(c.resultado().Mensagem, u"Data/Hora não sincronizada"_s);
        QCOMPARE(quantas(u"Temperaturas"_s, mau), 0);
        QCOMPARE(c.registo().quantos(), 50);
        // The configuration comes in whatever the clock says.
        QVERIFY(log2251::tabela(u"Sensores"_s).size() > 5);
    }

    void semRegistosFicaEmCurso() {
        Cena c({unidade({Defeito::LogVazio})});
        QVERIFY(c.correr());
        QCOMPARE(c.lista.linha(1).DSTAT, 10);
        QCOMPARE(c.resultado().Estado, 0);
        QCOMPARE(c.resultado().Mensagem, QString());
        QVERIFY(ficheirosBrutos().isEmpty());
    }

    void baseCheiaNaoApaga() {
        Cena c({unidade()});
        const QByteArray antes = (memoria(c.registo()).join(u'\n') + u'\n').toUtf8();
        cnBD().executar(u"CREATE TRIGGER cheio BEFORE INSERT ON Humidade BEGIN SELECT RAISE(ABORT, 'cheio'); END"_s);
        QVERIFY(c.correr());
        QCOMPARE(c.resultado().Mensagem, u"Erro de Base de Dados"_s);
        QVERIFY2(c.resultado().Pormenor.contains(u"cheio"), qPrintable(c.resultado().Pormenor));
        QCOMPARE(c.lista.linha(1).DSTAT, 9);
        QCOMPARE(c.registo().quantos(), 300);
        // The lines were on the disk before the tables were touched.
        QCOMPARE(Instalacao::lerFicheiro(ficheirosBrutos().value(0)), antes);
        cnBD().executar(u"DROP TRIGGER cheio"_s);
        QVERIFY(c.correr());
        QCOMPARE(c.registo().quantos(), 0);
        QCOMPARE(ficheirosBrutos().size(), 2); // in the same second, yet each in its own file
    }

    void semFicheiroBrutoNadaSeEscreve() {
        Cena c({unidade()});
        Instalacao::escreverFicheiro(logBruto::pasta(), "not a folder");
        QVERIFY(c.correr());
        QVERIFY2(c.resultado().Mensagem.startsWith(u"Erro ao escrever no ficheiro: "),
                 qPrintable(c.resultado().Mensagem));
        QCOMPARE(quantas(u"Temperaturas"_s, mau), 0);
        QCOMPARE(c.registo().quantos(), 300);
    }

    void nadaReunidoNaoApaga() {
        simulador::Definicao d = unidade({}, 3);
        d.canais = {{u"101"_s, u"Solto"_s, u"C"_s, 0, 0, 0, 0, false}};
        d.intervalo = 60;
        // Records of inputs or outputs would give rows: some minutes have none.
        d.agora = [] { return estado().ambiente.agora().addSecs(-60 * 3); };
        Cena c({d});
        QCOMPARE(memoria(c.registo()).filter(u";101;-9999"_s).size(), 3);
        QVERIFY(c.correr());
        QCOMPARE(c.resultado().Estado, 1);
        QVERIFY(c.resultado().Pormenor.contains(u"não foi apagada"));
        QCOMPARE(c.registo().quantos(), 3);
    }

    void linhasPorLerNaoApagam() {
        // Every fifth record is noise: what is stored for the other seconds stays, and so does the memory.
        Cena c({unidade()});
        QVERIFY(c.correr());
        const int antes = quantas(u"Temperaturas"_s, mau);
        c.unidades[0]->definirDefeitos({Defeito::LogLixo});
        c.registo().apagar(-300);
        QVERIFY(c.correr());
        QCOMPARE(quantas(u"Temperaturas"_s, mau), antes);
        QCOMPARE(c.resultado().Estado, -1);
        QCOMPARE(c.lista.linha(1).DSTAT, 9);
        QCOMPARE(c.resultado().Mensagem, u"60 linhas não lidas; o resto foi guardado"_s);
        QCOMPARE(c.resultado().Resumo.first(), u"240 linhas lidas, 60 não lidas"_s);
        QCOMPARE(c.resultado().Resumo.last(), u"memória não apagada: restam 300 registos"_s);
        QVERIFY2(c.resultado().info().contains(u"\nLinha 3: Linha incompleta: \""), qPrintable(c.resultado().info()));
        QVERIFY(c.resultado().info().endsWith(u"\ne mais 55 linhas"));
        QCOMPARE(c.registo().quantos(), 300);
    }

    void sobraNaMemoria() {
        Cena c({unidade({Defeito::ApagarSobra})});
        QVERIFY(c.correr());
        QCOMPARE(c.registo().quantos(), 150);
        QCOMPARE(c.resultado().Resumo.last(), u"apagamento de 300 registos confirmado, restam 150"_s);
    }

    void oQueSaiFicaAoLadoDoLog() {
        Cena c({unidade()});
        c.lista.linha(1).BLNERASELOG = u"0"_s;
        QVERIFY(c.correr());
        QCOMPARE(c.resultado().Resumo.last(), u"memória não apagada: restam 300 registos"_s);
        const QString bruto = ficheirosBrutos().value(0);
        cnBD().executar(u"UPDATE Temperaturas SET Temperatura = 99, flag = 'porta aberta'"_s);
        const auto meu = log2251::tudo();
        QSignalSpy fim(c.descarga.get(), &Descarga2251::terminou);
        c.descarga->importarFicheiro(1, bruto); // a kept log is not kept once more
        QVERIFY(fim.wait(20000));
        const int n = quantas(u"Temperaturas"_s, mau);
        QCOMPARE(c.resultado().Resumo.last(),
                 u"%1 leituras substituídas, %1 notas mantidas"_s.arg(QLocale(u"pt_PT"_s).toString(n)));
        QCOMPARE(ficheirosBrutos(), QStringList({bruto, bruto + u".substituidas"_s}));
        QCOMPARE(logBruto::ultimasSubstituidas(mau, c.unidades[0]->portaWeb()), bruto + u".substituidas"_s);
        QVERIFY(log2251::tudo() != meu);
        QCOMPARE(reposicao2251::repor(bruto + u".substituidas"_s, [] {}).repostas, n);
        QVERIFY(log2251::tudo() == meu);
    }

    void ficheiroQueNaoSeLe() {
        Cena c({unidade(), unidade({}, 50, bom)});
        QSignalSpy fim(c.descarga.get(), &Descarga2251::terminou);
        c.descarga->importarFicheiro(1, m_instalacao->ficheiro(u"ausente.log"_s));
        QVERIFY(fim.wait(10000));
        const QString dita = c.resultado(1).Mensagem;
        QVERIFY(dita.startsWith(u"Erro ao descarregar o ficheiro BIN: "));
        QCOMPARE(c.lista.linha(2).DSTAT, 7); // ticked, but a file concerns one row
        c.descarga->importarFicheiro(2, m_instalacao->ficheiro(u"outro.log"_s));
        QVERIFY(fim.wait(10000));
        QCOMPARE(c.resultado(1).Mensagem, dita); // what the other row says stays
        QCOMPARE(c.resultado(2).Mensagem, dita);
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
        QFETCH(Defeitos, defeitos);
        QFETCH(int, espera);
        simulador::Definicao d = unidade(defeitos, espera < 0 ? 60000 : 300);
        d.intervalo = 60;
        definir(u"LogEspera"_s, u"5000"_s);
        Cena c({d});
        QTimer fecho;
        connect(&fecho, &QTimer::timeout, this, [&] {
            if (espera >= 0 || !ficheirosBrutos().filter(QRegularExpression(u"log$"_s)).isEmpty())
                c.descarga.reset();
        });
        fecho.start(espera < 0 ? 5 : espera);
        c.descarga->descarregar();
        QTRY_VERIFY_WITH_TIMEOUT(!c.descarga, 10000);
        deixarPassar(50);
        // No transaction is left open.
        cnBD().executar(u"BEGIN"_s);
        cnBD().executar(u"COMMIT"_s);
        QCOMPARE(c.registo().quantos(), d.registos);
    }

    void acertoDoRelogio_data() {
        const Tabela<Defeitos, int, bool, bool> caso("defeitos", "codigo", "apagado", "acertado");
        caso("late", {Defeito::Lento}, 3, true, true);
        caso("the console closes", {Defeito::ConsolaFecha}, 5, true, false);
        caso("the console denies", {Defeito::ConsolaNega}, 5, true, true);
        caso("the unit does not erase", {Defeito::ApagarRecusa}, 3, false, true);
        caso("no document afterwards", {Defeito::WebEstado}, 4, true, true);
    }
    void acertoDoRelogio() {
        QFETCH(Defeitos, defeitos);
        simulador::Definicao d = unidade(defeitos);
        d.acertoMinutos = -90;
        d.atrasoMs = 20;
        const auto u = ligarUnidade(d);
        definir(u"PortaConsola"_s, QString::number(u->portaConsola()));
        Acerto2251 acerto;
        acerto.definirTempos({20, 1500, 50});
        QTEST(acerto.ActualizarDataHoraDoPoseidon(mau, QString::number(u->portaWeb())).codigo, "codigo");
        QTEST(u->registo().quantos() == 0, "apagado");
        const qint64 desvio = qAbs(u->registo().relogio().secsTo(estado().ambiente.agora()));
        QTEST(desvio < 60, "acertado");
    }

private:
    std::unique_ptr<log2251::BaseRapida> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_descarga2251)
#include "tst_descarga2251.moc"
