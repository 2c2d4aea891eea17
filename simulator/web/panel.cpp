#include "simulator/web/panel.h"

#include "simulator/web/connections.h"
#include "simulator/web/feed.h"
#include "simulator/web/gate.h"
#include "simulator/web/page_files.h"
#include "simulator/web/panel_json.h"

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <thread>

namespace simulator {
namespace {

constexpr const char* kHost = "127.0.0.1";
constexpr int kMostStreams = 24; // each of them has a thread of its own
constexpr std::size_t kThreads = kMostStreams + 8;
constexpr std::size_t kLongestLine = 4096;

constexpr int kNoContent = 204;
constexpr int kBadRequest = 400;
constexpr int kForbidden = 403;
constexpr int kUnavailable = 503;

void Refuse(httplib::Response& response, int status, const char* why)
{
    response.status = status;
    response.set_content(std::string(why) + "\n", "text/plain");
}

// The page names its other files with the token, where "{token}" stands.
std::string WithToken(const PageFile& file, const std::string& token)
{
    constexpr std::string_view kPlace = "{token}";
    std::string page(file.text);
    for (std::size_t at = 0; (at = page.find(kPlace, at)) != std::string::npos; at += token.size())
        page.replace(at, kPlace.size(), token);
    return page;
}

// The library's own options let a second program have the same port.
void LetPortBeReused(socket_t socket)
{
    const int reuse = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &reuse, sizeof reuse);
}

} // namespace

class Panel::Server
{
public:
    Server(Control& control, std::uint16_t port)
        : control_(control),
          feed_(std::make_shared<Feed>([&control] { return StateParts(control.simulator); })),
          port_(Bind(port)),
          gate_(kHost + (":" + std::to_string(port_)))
    {
        Configure();
        Route();
        control_.simulator.Control().WhenChanged([feed = feed_] { feed->Touch(); });
        thread_ = std::thread([this] { http_.listen_after_bind(); });
        while (!http_.is_running())
            std::this_thread::yield();
    }

    ~Server()
    {
        control_.simulator.Control().WhenChanged({});
        feed_->Close();
        http_.stop();
        EndConnections(port_);
        thread_.join();
    }

    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    Feed& News() { return *feed_; }
    std::string Address() const { return gate_.Address(); }

private:
    std::uint16_t Bind(std::uint16_t port)
    {
        http_.set_socket_options(LetPortBeReused);
        const int bound = port == 0 ? http_.bind_to_any_port(kHost) : http_.bind_to_port(kHost, port) ? port : -1;
        if (bound < 0)
            throw std::runtime_error("port " + std::to_string(port) + " on 127.0.0.1, for the panel, cannot be had");
        return static_cast<std::uint16_t>(bound);
    }

    void Configure()
    {
        http_.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
        http_.set_keep_alive_max_count(1); // a connection that idles would keep a thread
        http_.set_tcp_nodelay(true);
        http_.set_payload_max_length(kLongestLine);
        http_.set_default_headers(
            {{"Content-Security-Policy",
              "default-src 'none'; script-src 'self'; style-src 'self'; connect-src 'self'; "
              "img-src 'self' data:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'"},
             {"X-Content-Type-Options", "nosniff"},
             {"Referrer-Policy", "no-referrer"},
             {"Cross-Origin-Resource-Policy", "same-origin"},
             {"Cache-Control", "no-store"}});
        http_.set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
            if (request.get_header_value_count("Host") == 1 &&
                gate_.Admits(request.get_header_value("Host"), request.get_header_value("Origin"),
                             request.get_param_value("token")))
                return httplib::Server::HandlerResponse::Unhandled;
            Refuse(response, kForbidden, "Open the address that phnsim has printed, token included.");
            return httplib::Server::HandlerResponse::Handled;
        });
    }

    void Route()
    {
        for (const PageFile& file : PageFiles())
            http_.Get("/" + std::string(file.name), [&file](const httplib::Request&, httplib::Response& response) {
                response.set_content(std::string(file.text), std::string(file.type));
            });
        http_.Get("/", [page = WithToken(PageFiles().front(), gate_.Token())](const httplib::Request&,
                                                                              httplib::Response& response) {
            response.set_content(page, "text/html; charset=utf-8");
        });
        http_.Get("/events", [this](const httplib::Request&, httplib::Response& response) { Stream(response); });
        http_.Post("/control", [this](const httplib::Request& request, httplib::Response& response) {
            if (request.body.find_first_of("\r\n") != std::string::npos)
                return Refuse(response, kBadRequest, "One control line at a time.");
            if (!control_.Post(request.body))
                return Refuse(response, kUnavailable, "phnsim has not carried out the lines before this one yet.");
            response.status = kNoContent;
        });
    }

    void Stream(httplib::Response& response)
    {
        feed_->Touch(); // has the other streams notice whether their pages are still there
        if (++streams_ > kMostStreams) {
            --streams_;
            return Refuse(response, kUnavailable, "Too many pages show this panel.");
        }
        const auto write = [feed = feed_, reader = Feed::Reader{}](std::size_t, httplib::DataSink& sink) mutable {
            const auto news = feed->Next(reader);
            return news && sink.is_writable() && sink.write(news->data(), news->size());
        };
        response.set_chunked_content_provider("text/event-stream", write, [this](bool) { --streams_; });
    }

    Control& control_;
    const std::shared_ptr<Feed> feed_;
    std::atomic<int> streams_ = 0;
    httplib::Server http_;
    const std::uint16_t port_;
    const Gate gate_;
    std::thread thread_;
};

Panel::Panel(Control& control, std::uint16_t port) : server_(std::make_unique<Server>(control, port)) {}

Panel::~Panel() = default;

std::string Panel::Address() const
{
    return server_->Address();
}

void Panel::Show(const Exchange& exchange)
{
    server_->News().Add("exchange", ExchangeJson(exchange, std::chrono::system_clock::now()));
}

void Panel::Say(std::string_view line)
{
    server_->News().Add("said", TextJson(line));
}

} // namespace simulator
