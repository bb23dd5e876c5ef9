// The entry point: chooses the desktop and runs the helper on it.
//
//   KESTRO_SCENE               a scene to play; without it, the live desktop
//   KESTRO_SCENE_SPEED         times real time; without it, as fast as the machine can
//   KESTRO_TRANSCRIPT          a file, or - for standard output
//   KESTRO_TRANSCRIPT_FORMAT   "json" (default) or "text"
//   KESTRO_DATA_DIR            where the product keeps its database and files
