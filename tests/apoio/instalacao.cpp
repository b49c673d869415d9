#include "tests/apoio/instalacao.h"

#include "core/datas.h"
#include "core/perfil.h"
#include "data/criarBD.h"
#include "data/esquema.h"
#include "data/ligacao.h"
#include "data/modMain.h"
#include "data/motor.h"

#include <QDir>
#include <QFile>

#include <stdexcept>

namespace {

// Rows are put in through an engine of their own, so that a test sees what another program would have written.
class Escritor {
public:
    explicit Escritor(const QString &caminho)
        : m_motor(fabricaDe(caminho).abrir(caminho, {60'000, {}})) { // the log may just be taken in
        executar(u"PRAGMA synchronous = OFF"_s);
    }
    void executar(const QString &sql) { m_motor->executarGuiao(sql); }
    void preparar(const QString &sql) {
        m_instrucao.reset();
        m_instrucao = m_motor->preparar(sql, Motor::Uso::Muitas);
        if (!m_instrucao)
            throw std::runtime_error("fixture: not one statement: " + sql.toStdString());
    }
    void passo(const QVariantList &valores = {}) {
        for (int i = 0; i < valores.size(); ++i)
            ligar(i + 1, valores[i]);
        m_instrucao->executar();
    }
    QVariantList linha() {
        QVariantList celulas;
        if (!m_instrucao->avancar())
            return celulas;
        for (int i = 0; i < m_instrucao->colunas(); ++i) {
            int tamanho = 0;
            const char *texto = m_instrucao->texto(i, tamanho);
            celulas.append(texto ? QVariant(QString::fromUtf8(texto)) : QVariant());
        }
        return celulas;
    }

private:
    void ligar(int posicao, const QVariant &valor) {
        if (valor.isNull())
            return m_instrucao->ligarNulo(posicao);
        if (valor.typeId() == QMetaType::Double)
            return m_instrucao->ligarReal(posicao, valor.toDouble());
        if (valor.typeId() == QMetaType::Int || valor.typeId() == QMetaType::LongLong)
            return m_instrucao->ligarInteiro(posicao, valor.toLongLong());
        m_instrucao->ligarTexto(posicao, valor.toString().toUtf8(), Instrucao::Bytes::Copiados);
    }
    std::shared_ptr<Motor> m_motor;
    std::unique_ptr<Instrucao> m_instrucao; // gone before its engine
};

} // namespace

Instalacao::Instalacao(Base base, const QLocale &locale) : m_locale(locale) {
    QDir raiz(m_raiz.path());
    for (const QString &pasta : {u"programa"_s, u"definicoes"_s, u"BD"_s})
        raiz.mkdir(pasta);
    m_agora = QDateTime(QDate(2024, 3, 15), QTime(10, 20, 30), Qt::UTC);
    escreverFicheiro(pastaPrograma() + u"/Kelvark.ini"_s, QByteArray("[INI]\r\nPath=") + pastaINI().toUtf8() + "/\r\n");
    prepararEstado();
    if (base == Base::Vazia) {
        criarBase(caminhoBD());
        abrirBase();
    }
}

Instalacao::~Instalacao() {
    verificar();
    renovarEstado();
}

void Instalacao::verificar() {
    erros.verificar();
    dialogos.verificar();
}

void Instalacao::prepararEstado() {
    renovarEstado();
    Estado &e = estado();
    e.PastaPrograma = pastaPrograma();
    e.Lingua = u"PT"_s;
    e.ambiente.agora = [this] { return m_agora; };
    e.ambiente.redeLigada = [] { return true; };
    e.ambiente.locale = m_locale;
    e.ambiente.apresentador = &erros;
    e.ambiente.dialogos = &dialogos;
}

void Instalacao::reiniciar() {
    prepararEstado();
}

void Instalacao::escreverFicheiro(const QString &caminho, const QByteArray &bytes) {
    QFile f(caminho);
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size())
        throw std::runtime_error("fixture: cannot write " + caminho.toStdString());
}

QByteArray Instalacao::lerFicheiro(const QString &caminho) {
    QFile f(caminho);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

void Instalacao::criarBase(const QString &caminho) const {
    // Made once a process, then copied: creating some sixty tables takes longer than most tests.
    static const QByteArray modelo = [] {
        QTemporaryDir pasta;
        const QString ficheiro = pasta.filePath(u"modelo"_s);
        criarBD(ficheiro);
        return lerFicheiro(ficheiro);
    }();
    escreverFicheiro(caminho, modelo);
}

void Instalacao::abrirBase() {
    modINI::SaveSetting(estado().NomePrograma, u"BD"_s, u"MAIN"_s, caminhoBD());
    if (!modMain::carregaGlobaisBD())
        reprovar(u"The fixture's database does not open"_s);
}

void Instalacao::relogio(const QString &instante) {
    m_agora = datas::instanteDe(datas::segundosDe(instante));
}

void Instalacao::locale(const QString &nome) {
    m_locale = QLocale(nome);
    estado().ambiente.locale = m_locale;
}

void Instalacao::ficheiroLingua(const QString &codigo, const QList<Texto> &textos) const {
    const QString caminho = pastaINI() + u"/Kelvark-"_s + codigo + u".ini"_s;
    Perfil perfil(lerFicheiro(caminho));
    for (const Texto &t : textos)
        perfil.definir(t.seccao, t.chave, t.valor);
    escreverFicheiro(caminho, perfil.bytes());
}

void Instalacao::usarLingua(const QString &codigo) const {
    estado().Lingua = codigo;
}

QString Instalacao::colunaDoValor(const QString &tabela) {
    if (tabela.startsWith(u"Humidade", Qt::CaseInsensitive))
        return u"Percentagem"_s;
    return tabela.startsWith(u"Temperaturas", Qt::CaseInsensitive) || tabela.startsWith(u"Medias", Qt::CaseInsensitive)
               ? u"Temperatura"_s
               : u"Leitura"_s;
}

void Instalacao::sensor(const Sensor &s) const {
    sensores({s});
}

void Instalacao::sensores(const QList<Sensor> &lista) const {
    Escritor e(caminhoBD());
    e.executar(u"BEGIN IMMEDIATE"_s);
    e.preparar(u"INSERT INTO Sensores (SensorID, ID, Nlinha, Tipo, Descricao, Seleccionado, Grupo, Fonte, PoseidonIP, "
               "UltTemp, SensUIMax, SensUIMin) VALUES (?,' ',(SELECT COUNT(*) + 1 FROM Sensores),?,?,?,?,?,?,"
               "-999.9,20,4)"_s);
    for (const Sensor &s : lista)
        e.passo({s.SensorID, s.Tipo, s.Descricao, s.Seleccionado, s.Grupo, s.Fonte, s.PoseidonIP});
    e.executar(u"COMMIT"_s);
}

void Instalacao::leituras(const QString &tabela, const QString &sensor, const QList<Leitura> &linhas) const {
    Escritor e(caminhoBD());
    e.executar(u"BEGIN IMMEDIATE"_s);
    e.preparar(u"INSERT INTO %1 (Data, Sensor, NomeSensor, %2, Observacoes, flag) VALUES (?1, ?2, COALESCE((SELECT "
               "Descricao FROM Sensores WHERE SensorID = ?2), ?2), ?3, ?4, ?5)"_s.arg(tabela, colunaDoValor(tabela)));
    for (const Leitura &l : linhas)
        e.passo({l.Data, sensor, l.valor, l.Observacoes, l.flag});
    e.executar(u"COMMIT"_s);
}

void Instalacao::leituras(const QString &tabela, const QString &sensor, const QString &inicio, int passoSegundos,
                          const QList<double> &valores, const QVariant &observacoes) const {
    QList<Leitura> linhas;
    linhas.reserve(valores.size());
    double segundos = datas::segundosDe(inicio);
    for (const double v : valores) {
        linhas.append({datas::textoBD(segundos), v, observacoes});
        segundos += passoSegundos;
    }
    leituras(tabela, sensor, linhas);
}

void Instalacao::executar(const QString &sql, const QVariantList &valores) const {
    Escritor e(caminhoBD());
    e.preparar(sql);
    e.passo(valores);
}

QVariantList Instalacao::linha(const QString &sql) const {
    Escritor e(caminhoBD());
    e.preparar(sql);
    return e.linha();
}
