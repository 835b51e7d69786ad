// The one unit that compiles Asio's own code.
#include <asio/impl/src.hpp>
