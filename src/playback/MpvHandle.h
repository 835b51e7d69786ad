// A player of libmpv, closed to everything but this program.
#pragma once

struct mpv_handle;

namespace vellum {

// Whether the film is heard. Without a sound device Automatic plays silently too.
enum class AudioOutput { Automatic, Silent };

// Owns the handle; made on the main thread, shared by the core and the picture, gone with the last
// of them on whatever thread that is. Its end waits for the player's threads.
class MpvHandle {
public:
  // Sets the process's LC_NUMERIC to "C", without which libmpv does not start, and exempts loopback
  // from a proxy in the environment.
  explicit MpvHandle(AudioOutput audio);
  ~MpvHandle();
  MpvHandle(const MpvHandle&) = delete;
  MpvHandle& operator=(const MpvHandle&) = delete;

  // Null if libmpv did not start; its functions must not be called then.
  mpv_handle* get() const { return m_handle; }

private:
  mpv_handle* m_handle;
};

} // namespace vellum
