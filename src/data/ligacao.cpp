#include "data/ligacao.h"

#include "core/datas.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/avarias.h"
#include "data/esquema.h"
#include "data/recordset.h"

#include <QElapsedTimer>
#include <QThread>

#include <thread>
#include <utility>

namespace {

constexpr int esperaPelaRecolhaMs = 5000; // a reader that holds it back is not waited for longer

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

void ligar(Instrucao &instrucao, int posicao, const QVariant &valor) {
    using enum Instrucao::Bytes;
    if (valor.isNull())
        return instrucao.ligarNulo(posicao);
    switch (valor.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return instrucao.ligarInteiro(posicao, valor.toLongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return instrucao.ligarReal(posicao, valor.toDouble());
    case QMetaType::QDateTime: {
        const QDateTime d = valor.toDateTime();
        return d.isValid() ? instrucao.ligarTexto(posicao, datas::textoBD(d).toUtf8(), Copiados)
                           : instrucao.ligarNulo(posicao);
    }
    default:
        if (valor.typeId() == qMetaTypeId<Cru>()) {
            const Cru cru = valor.value<Cru>();
            return cru.blob ? instrucao.ligarBloco(posicao, cru.bytes)
                            : instrucao.ligarTexto(posicao, cru.bytes, Copiados);
        }
        return instrucao.ligarTexto(posicao, valor.toString().toUtf8(), Copiados);
    }
}

// Statements that every engine has.
QString ponto(QStringView verbo, int nivel) {
    return verbo + u" n"_s + QString::number(nivel);
}

} // namespace

std::unique_ptr<Instrucao> Ligacao::preparar(Motor &motor, const QString &sql, Motor::Uso uso,
                                             const Parametros *valores) {
    // What follows a transaction that the engine has undone by itself would be stored without one.
    if (motor.transaccoes > 0 && !motor.emTransaccao())
        avarias::falharAnulada();
    std::unique_ptr<Instrucao> instrucao = motor.preparar(sql, uso);
    if (!instrucao || (valores && instrucao->valores() != valores->size()))
        throw Falha(erros::chamadaInvalida,
                    u"A consulta não é uma só instrução com %1 valores: %2"_s.arg(valores ? valores->size() : 0)
                        .arg(sql.left(200)));
    if (instrucao->escreve())
        motor.exigirSemPasso();
    int posicao = 0;
    if (valores)
        for (const QVariant &valor : *valores)
            ligar(*instrucao, ++posicao, valor);
    return instrucao;
}

Ligacao::Ligacao() = default;

Ligacao::~Ligacao() {
    if (aberta())
        fechar();
}

bool Ligacao::aberta() const {
    return m_motor != nullptr;
}

bool Ligacao::soLeitura() const {
    return aberta() && m_motor->soLeitura();
}

QString Ligacao::caminho() const {
    return m_caminho;
}

void Ligacao::definirEspera(int ms) {
    m_abertura.esperaMs = ms;
    if (aberta())
        motor().definirEspera(ms);
}

Motor &Ligacao::motor() const {
    if (!aberta())
        avarias::falharFechada();
    m_motor->esperar();
    return *m_motor;
}

void Ligacao::fechar() {
    // A cursor may keep the file open for a while; the write lock must not stay with it.
    if (motor().transaccoes > 0)
        m_motor->anular();
    m_motor.reset();
}

void Ligacao::abrir(const QString &caminho) {
    if (aberta())
        throw Falha(erros::objectoAberto, u"A base de dados já está aberta."_s);
    std::shared_ptr<Motor> novo = fabricaDe(caminho).abrir(caminho, m_abertura);
    const qint64 versao = novo->versaoDoEsquema();
    if (versao > versaoDoEsquema)
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"BDMaisRecente"_s, u"\"%1\" foi criada por uma versão mais recente (esquema %2; esta versão "
                                              "conhece até ao %3). O ficheiro não foi alterado."_s)
                        .arg(caminho)
                        .arg(versao)
                        .arg(versaoDoEsquema));
    m_motor = std::move(novo);
    m_caminho = caminho;
}

void Ligacao::exigirNoLugar() const {
    motor().exigirNoLugar();
}

QString Ligacao::novidadeDoLugar() {
    if (!aberta() || m_motor->transaccoes > 0 || m_motor->emConfirmacao) // its confirmation will say so
        return {};
    const bool mantem = m_motor->noLugar();
    const bool novidade = !mantem && !m_motor->avisada;
    m_motor->avisada = !mantem;
    return novidade ? avarias::textoDeTrocada(m_caminho) : QString();
}

void Ligacao::definirRecolha(const MedidasDeRecolha &medidas) {
    m_abertura.recolha = medidas;
}

Recordset Ligacao::consultar(const QString &sql, const Parametros &valores) {
    if (motor().desactualizado()) {
        fechar();
        abrir(m_caminho);
    }
    return {m_motor, preparar(motor(), sql, Motor::Uso::UmaVez, &valores)};
}

qint64 Ligacao::executar(const QString &sql, const Parametros &valores) {
    Recordset rs = consultar(sql, valores);
    const bool sozinha = rs.escreve() && !motor().emTransaccao(); // in a transaction its end is looked at
    if (sozinha)
        motor().exigirNoLugar();
    const qint64 alteradas = rs.m_instrucao->executar();
    if (sozinha && !motor().emTransaccao())
        motor().exigirNoLugar();
    return alteradas;
}

void Ligacao::executarGuiao(const QString &sql) {
    motor().exigirNoLugar();
    motor().exigirSemPasso();
    motor().executarGuiao(sql);
    motor().exigirNoLugar();
}

void Ligacao::copiarPara(const QString &destino, const AoCopiar &acompanhar) {
    const std::shared_ptr<Motor> copiado = (motor(), m_motor); // also when events close the connection
    copiado->copiarPara(destino, acompanhar);
}

Transaccao::Transaccao(Ligacao &ligacao) : m_ligacao(ligacao) {
    Motor &motor = m_ligacao.motor();
    motor.exigirSemPasso();
    if (motor.transaccoes == 0) {
        motor.exigirNoLugar();
        motor.iniciar();
        motor.profundidade = profundidadeDosEventos();
    } else
        m_ligacao.executar(ponto(u"SAVEPOINT", motor.transaccoes));
    ++motor.transaccoes;
    m_motor = m_ligacao.m_motor;
}

void Transaccao::confirmar() {
    const auto motor = m_motor.lock();
    if (!motor || motor != m_ligacao.m_motor)
        throw Falha(
            erros::objectoFechado,
            texto(u"BDFechadaAMeio"_s, u"A base de dados foi fechada a meio da alteração; nada foi gravado."_s));
    motor->esperar();
    const int nivel = motor->transaccoes - 1;
    if (nivel > 0) {
        m_ligacao.executar(ponto(u"RELEASE", nivel));
        motor->transaccoes = nivel;
        m_pendente = false;
        return;
    }
    motor->exigirNoLugar(); // undone otherwise
    if (!motor->emTransaccao())
        avarias::falharAnulada();
    if (const int codigo = motor->confirmar())
        motor->falhar(codigo, u"COMMIT"_s);
    motor->transaccoes = 0;
    m_pendente = false;
    motor->exigirNoLugar();
}

void Transaccao::confirmar(const std::function<void()> &passar) {
    const auto motor = m_motor.lock();
    if (!motor || motor != m_ligacao.m_motor || motor->transaccoes > 1)
        return confirmar();
    motor->exigirNoLugar();
    int codigo = 0;
    const auto gravar = [&, antes = estado().ambiente.aoConfirmar] {
        if (antes)
            antes();
        motor->adiantarConfirmacao();
        codigo = motor->confirmar();
        if (codigo == 0) {
            motor->transaccoes = 0;
            m_pendente = false;
        }
        motor->emConfirmacao = false;
        motor->emConfirmacao.notify_all();
    };
    motor->emConfirmacao = true;
    {
        const std::jthread disco(gravar); // waited for on every way out
        while (motor->emConfirmacao) {
            passar();
            QThread::msleep(1);
        }
    }
    if (codigo != 0)
        motor->falhar(codigo, u"COMMIT"_s);
    motor->exigirNoLugar();
    QElapsedTimer desdeAConfirmacao;
    desdeAConfirmacao.start();
    while (motor->porRecolher() && desdeAConfirmacao.elapsed() < esperaPelaRecolhaMs) {
        passar();
        QThread::msleep(1);
    }
}

Transaccao::~Transaccao() {
    const auto motor = m_motor.lock();
    if (!m_pendente || !motor || motor != m_ligacao.m_motor) // closing has undone it
        return;
    const int nivel = --motor->transaccoes;
    if (nivel == 0) {
        motor->anular();
        return;
    }
    try {
        motor->executarGuiao(ponto(u"ROLLBACK TO", nivel) + u"; "_s + ponto(u"RELEASE", nivel));
    } catch (const Falha &) { // the engine has undone it by itself already
    }
}

Ligacao &ligacaoPartilhada() {
    if (!estado().cnBD)
        estado().cnBD = std::make_unique<Ligacao>();
    return static_cast<Ligacao &>(*estado().cnBD);
}

Ligacao &cnBD() {
    Ligacao &ligacao = ligacaoPartilhada();
    if (!ligacao.aberta())
        avarias::falharFechada();
    return ligacao;
}
