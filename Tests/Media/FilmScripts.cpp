// Stands in for hbbtv-media: each film is a run of the shell script that is its argument, with the film's
// line as descriptor 3.
#include <csignal>

#include <gio/gunixconnection.h>
#include <unistd.h>

int main(int, char** arguments) {
    auto* receiver = g_socket_connection_factory_create_connection(g_socket_new_from_fd(3, nullptr));
    std::signal(SIGCHLD, SIG_IGN);
    for (;;) {
        const int line = g_unix_connection_receive_fd(G_UNIX_CONNECTION(receiver), nullptr, nullptr);
        if (line < 0)
            _exit(0);
        if (fork() == 0) {
            dup2(line, 3);
            execl("/bin/sh", "sh", arguments[1], nullptr);
        }
        close(line);
    }
}
