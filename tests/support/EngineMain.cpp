namespace vrn::test {
int RunEngineTests(int argc, char** argv);
}

int main(int argc, char** argv) { return vrn::test::RunEngineTests(argc, argv); }
